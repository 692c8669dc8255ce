// What may pass through a door of the graph: sound, and nothing that would stay in the memory of filters and followers
// for ever.
// Threads: any.
#pragma once

#include "base/Realtime.h"

#include <cstdint>

namespace wave {

// 360 dB above full scale: no sample beyond is sound. What is below overflows in no filter by itself; only more than a
// dozen bands in a row, all at their most, reach the end of the numbers.
inline constexpr float loudest = 1e18f;

// Copies, with 0 in place of not-a-number, infinity and magnitudes above the loudest. The other samples stay as they
// are, bit by bit. May work in place.
class SoundCopy {
public:
    using Function = void(const float* in, std::int32_t count, float* out) noexcept;

    static void plain(const float* in, std::int32_t count, float* out) noexcept REALTIME; // the reference
    static Function* avx2() noexcept REALTIME; // null where the processor has no such instructions

private:
    static Function* const wide; // null where it was not compiled
};

void copySound(const float* in, std::int32_t count, float* out) noexcept REALTIME; // by the fastest

} // namespace wave
