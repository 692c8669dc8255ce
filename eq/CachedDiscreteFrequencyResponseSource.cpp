#include "eq/CachedDiscreteFrequencyResponseSource.h"

#include <algorithm>

void CachedDiscreteFrequencyResponseSource::resize(std::size_t count) {
    values.resize(count);
    validCount = 0;
}

std::complex<float> CachedDiscreteFrequencyResponseSource::response(std::int32_t index) noexcept REALTIME {
    std::complex<float> value;
    CachedDiscreteFrequencyResponseSource::responses(index, {&value, 1});
    return value;
}

void CachedDiscreteFrequencyResponseSource::responses(std::int32_t start,
                                                      std::span<std::complex<float>> out) noexcept REALTIME {
    const std::int64_t end = start + static_cast<std::int64_t>(out.size());
    if (start < 0 || start > validCount || end > static_cast<std::int64_t>(values.size())) {
        computeResponses(start, out); // off the cache, or with a gap below
        return;
    }
    if (end > validCount) {
        const auto from = static_cast<std::size_t>(validCount);
        computeResponses(validCount, std::span(values).subspan(from, static_cast<std::size_t>(end) - from));
        validCount = static_cast<std::int32_t>(end);
    }
    std::copy_n(values.begin() + start, out.size(), out.begin());
}

float CachedDiscreteFrequencyResponseSource::squaredMagnitude(std::int32_t index) noexcept REALTIME {
    return std::norm(CachedDiscreteFrequencyResponseSource::response(index));
}

void CachedDiscreteFrequencyResponseSource::squaredMagnitudes(std::int32_t start,
                                                              std::span<float> out) noexcept REALTIME {
    for (float& each : out)
        each = CachedDiscreteFrequencyResponseSource::squaredMagnitude(start++);
}
