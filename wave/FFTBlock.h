// Samples or a spectrum, and the transform from one to the other, at once or in pieces.
// Threads: audio, or any with its owner excluded.
#pragma once

#include "base/Realtime.h"
#include "wave/AlignedBuffer.h"
#include "wave/FFTPlan.h"

#include <cstddef>
#include <cstdint>
#include <span>

// A spectrum of N real samples is half-complex: with X(k) the sum of x(n) exp(-2 pi j k n / N), data()[k] is the real
// part of X(k), data()[N/2 + k] minus its imaginary part, for k = 0 ... N/2 - 1; but data()[N/2] is X(N/2), which is
// real. The forward transform does not scale, and an inverse makes N times the samples; readScaled sets that right.
class FFTBlock {
public:
    explicit FFTBlock(const FFTPlan& plan);
    // `sharedScratch` holds at least the plan's size, and no other block transforms with it before this one is done.
    FFTBlock(const FFTPlan& plan, AlignedBuffer<float>& sharedScratch);
    FFTBlock(const FFTBlock&) = delete;
    FFTBlock& operator=(const FFTBlock&) = delete;

    // Goes on with the transform that begin() has started; done after getTotalWork() units. Between two steps nobody
    // touches the data.
    void begin() noexcept REALTIME;
    void advance(std::int32_t units) noexcept REALTIME;
    void advanceInverse(std::int32_t units) noexcept REALTIME;

    void transform() noexcept REALTIME; // from first to last
    void transformInverse() noexcept REALTIME;

    void clear() noexcept REALTIME;

    // Samples offset to offset + count after an inverse transform, in their own scale.
    void readScaled(std::int32_t offset, float* out, std::int32_t count) const noexcept REALTIME;
    void addScaled(std::int32_t offset, float* out, std::int32_t count) const noexcept REALTIME;

    const FFTPlan& getPlan() const noexcept REALTIME { return plan; }
    float* data() noexcept REALTIME { return samples.data(); } // the plan's size
    const float* data() const noexcept REALTIME { return samples.data(); }

private:
    void advance(std::span<const FFTPlan::Stage> stages, std::int32_t units, bool inverse) noexcept REALTIME;

    const FFTPlan& plan;
    AlignedBuffer<float> samples;
    AlignedBuffer<float> ownScratch;
    AlignedBuffer<float>& scratch;
    std::size_t stage = 0;
    std::int32_t stageWork = 0;   // units done in this stage
    std::int32_t stageGroups = 0; // of its groups
};
