#include "eq/CachedDiscreteMagnitudeResponseSource.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr std::int32_t group = 4;

std::int32_t roundedUp(std::int32_t count) noexcept {
    return (count + group - 1) / group * group;
}

} // namespace

void CachedDiscreteMagnitudeResponseSource::reserve(std::int32_t count) {
    if (values.getCapacity() < count)
        values.resize(roundedUp(count));
    validCount = 0;
}

bool CachedDiscreteMagnitudeResponseSource::provide(std::int32_t start, std::size_t count) noexcept REALTIME {
    const std::int64_t end = start + static_cast<std::int64_t>(count);
    if (start < 0 || end > values.getCapacity())
        return false;
    if (end > validCount) {
        const std::int32_t from = validCount / group * group;
        const std::int32_t to = roundedUp(static_cast<std::int32_t>(end));
        computeSquaredMagnitudes(from, values.data() + from, to - from);
        validCount = to;
    }
    return true;
}

void CachedDiscreteMagnitudeResponseSource::squaredMagnitudes(std::int32_t start,
                                                              std::span<float> out) noexcept REALTIME {
    if (provide(start, out.size()))
        std::copy_n(values.data() + start, out.size(), out.data());
    else
        for (float& each : out)
            each = CachedDiscreteMagnitudeResponseSource::squaredMagnitude(start++);
}

float CachedDiscreteMagnitudeResponseSource::squaredMagnitude(std::int32_t index) noexcept REALTIME {
    if (index >= 0 && index < validCount)
        return values[index];
    const float computed = computeSquaredMagnitude(index);
    if (index == validCount && index < values.getCapacity()) {
        values[index] = computed;
        ++validCount;
    }
    return computed;
}

void CachedDiscreteMagnitudeResponseSource::responses(std::int32_t start,
                                                      std::span<std::complex<float>> out) noexcept REALTIME {
    if (provide(start, out.size()))
        for (std::complex<float>& each : out)
            each = std::sqrt(values[start++]);
    else
        for (std::complex<float>& each : out)
            each = CachedDiscreteMagnitudeResponseSource::response(start++);
}

std::complex<float> CachedDiscreteMagnitudeResponseSource::response(std::int32_t index) noexcept REALTIME {
    return std::sqrt(CachedDiscreteMagnitudeResponseSource::squaredMagnitude(index));
}
