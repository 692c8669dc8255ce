// Loops over blocks. They work on whole groups of 8 floats, which the room behind every block allows: what they write
// behind `count`, up to the end of the group, is of no value. What they write to is nobody's input.
// Threads: any.
#pragma once

#include "base/Realtime.h"

#include <cmath>
#include <cstdint>

namespace wave {

inline constexpr std::int32_t groupSize = 8; // floats in 32 bytes, to which the room of a block is rounded up

inline std::int32_t wholeGroups(std::int32_t count) noexcept REALTIME {
    return (count + groupSize - 1) & -groupSize;
}

// out[i] = law(inputs[i]...)
template <typename Law, typename... Samples>
inline void mapBlock(float* __restrict out, std::int32_t count, Law law,
                     const Samples* __restrict... inputs) noexcept REALTIME {
    const std::int32_t whole = wholeGroups(count);
    for (std::int32_t index = 0; index < whole; ++index)
        out[index] = law(inputs[index]...);
}

// out[i] = law(out[i], inputs[i]...)
template <typename Law, typename... Samples>
inline void updateBlock(float* __restrict out, std::int32_t count, Law law,
                        const Samples* __restrict... inputs) noexcept REALTIME {
    const std::int32_t whole = wholeGroups(count);
    for (std::int32_t index = 0; index < whole; ++index)
        out[index] = law(out[index], inputs[index]...);
}

// The largest or smallest value, or magnitude, of `count` samples and `start`. A not-a-number never wins.
template <bool largest, bool magnitudes>
inline float extremeOf(const float* samples, std::int32_t count, float start) noexcept REALTIME {
    const auto better = [](float value, float best) {
        if constexpr (magnitudes)
            value = std::fabs(value);
        if constexpr (largest)
            return value > best ? value : best;
        else
            return value < best ? value : best;
    };
    // Independent lanes: the compiler may not reorder one chain of comparisons, but it may run these side by side.
    float lanes[groupSize];
    for (float& lane : lanes)
        lane = start;
    const std::int32_t whole = count & -groupSize;
    for (std::int32_t index = 0; index < whole; index += groupSize)
        for (std::int32_t lane = 0; lane < groupSize; ++lane)
            lanes[lane] = better(samples[index + lane], lanes[lane]);
    float best = start;
    for (std::int32_t index = whole; index < count; ++index)
        best = better(samples[index], best);
    for (const float lane : lanes)
        best = better(lane, best);
    return best;
}

} // namespace wave
