#include "framework/IndexRange.h"

#include <algorithm>

namespace {

// The step of 0 to steps that is nearest to a position of 0 to 1.
std::int32_t nearestStep(double position, std::int32_t steps) noexcept REALTIME {
    const double scaled = position * steps + 0.5;
    if (!(scaled >= 1.0)) // a not-a-number too
        return 0;
    return scaled >= steps ? steps : static_cast<std::int32_t>(scaled);
}

} // namespace

std::int32_t IndexRange::indexOf(float value) const noexcept REALTIME {
    if (!(value > static_cast<float>(lowest)))
        return lowest;
    return value >= static_cast<float>(highest) ? highest : static_cast<std::int32_t>(value);
}

double IndexRange::normalize(float value) const noexcept REALTIME {
    return highest > lowest ? (static_cast<double>(value) - lowest) / (highest - lowest) : 0.0;
}

std::int32_t IndexRange::denormalize(double normalized) const noexcept REALTIME {
    return lowest + nearestStep(normalized, highest - lowest);
}

IndexRange::Segment IndexRange::segmentFor(std::int32_t version) const noexcept {
    Segment segment{lowest, highest, true};
    for (const Limit& limit : limits) {
        if (version <= limit.version) {
            segment.high = limit.index;
            break;
        }
        segment.low = limit.index;
        segment.first = false;
    }
    return segment;
}

double IndexRange::normalizeForVersion(float value, std::int32_t version) const noexcept {
    if (limits.empty())
        return normalize(value);
    const auto [low, high, first] = segmentFor(version);
    const bool inside = value > static_cast<float>(low) && value <= static_cast<float>(high);
    return inside ? (static_cast<double>(value) - low) / (high - low) : 0.0;
}

bool IndexRange::denormalizeForVersion(double normalized, std::int32_t version, std::int32_t& index) const noexcept {
    const auto [low, high, first] = segmentFor(version);
    const std::int32_t step = nearestStep(normalized, high - low);
    index = low + step;
    return first || step >= 1;
}

std::int32_t IndexRange::limitForVersion(std::int32_t version) const noexcept {
    const auto found =
        std::find_if(limits.begin(), limits.end(), [version](const Limit& limit) { return limit.version == version; });
    return found != limits.end() ? found->index : -1;
}
