// The range of a stepped parameter, and its normalized view now and in files of older format versions.
// Threads: any.
#pragma once

#include "base/Realtime.h"

#include <cstdint>
#include <span>

class IndexRange {
public:
    // Up to this format version the range ended at this index.
    struct Limit {
        std::int32_t index;
        std::int32_t version;
    };

    void setBounds(std::int32_t low, std::int32_t high) noexcept {
        lowest = low;
        highest = high;
    }
    // In ascending version; constant data that outlives the range.
    void setLimits(std::span<const Limit> ascending) noexcept { limits = ascending; }

    std::int32_t minimum() const noexcept REALTIME { return lowest; }
    std::int32_t maximum() const noexcept REALTIME { return highest; }
    bool contains(std::int64_t index) const noexcept REALTIME { return index >= lowest && index <= highest; }
    // Truncates and clamps; a not-a-number gives the minimum.
    std::int32_t indexOf(float value) const noexcept REALTIME;

    double normalize(float value) const noexcept REALTIME;
    std::int32_t denormalize(double normalized) const noexcept REALTIME; // nearest step, clamped

    // Each version that ended at a limit had a segment of its own behind the one before.
    double normalizeForVersion(float value, std::int32_t version) const noexcept;
    // False: the place of a value that belongs to an earlier segment.
    [[nodiscard]] bool denormalizeForVersion(double normalized, std::int32_t version,
                                             std::int32_t& index) const noexcept;
    std::int32_t limitForVersion(std::int32_t version) const noexcept; // -1: none

private:
    struct Segment {
        std::int32_t low;
        std::int32_t high;
        bool first;
    };
    Segment segmentFor(std::int32_t version) const noexcept;

    std::int32_t lowest = 0;
    std::int32_t highest = 0;
    std::span<const Limit> limits;
};
