// Loops over blocks. They work on whole groups of 8 floats, which the room behind every block allows: what they write
// behind `count`, up to the end of the group, is of no value. What they write to is nobody's input.
// Threads: any.
#pragma once

#include "base/Realtime.h"

#include <bit>
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

// 360 dB above full scale: no sample beyond is sound. What is below overflows in no filter by itself; only more than a
// dozen bands in a row, all at their most, reach the end of the numbers.
inline constexpr float loudest = 1e18f;

// Copies, with 0 in place of all that is no sound: not-a-number, infinity and magnitudes above the loudest. The other
// samples stay as they are, bit by bit. May work in place.
inline void copySound(const float* in, std::int32_t count, float* out) noexcept REALTIME {
    for (std::int32_t index = 0; index < count; ++index)
        out[index] = std::fabs(in[index]) <= loudest ? in[index] : 0.0f;
}

// False: there is an infinity or a not-a-number among the samples.
inline bool allFinite(const float* samples, std::int32_t count) noexcept REALTIME {
    // On the bits, since the compiler may not reorder a sum of floats. An exponent of all ones overflows into the sign.
    constexpr std::uint32_t exponent = 0x7F800000;
    std::uint32_t seen = 0;
    for (std::int32_t index = 0; index < count; ++index)
        seen |= (std::bit_cast<std::uint32_t>(samples[index]) & exponent) + 0x00800000;
    return (seen & 0x80000000) == 0;
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
