// The inner loops of the transform and of the products of spectra, one table for each instruction set.
// Threads: any; the tables never change.
#pragma once

#include "base/Realtime.h"

#include <cstdint>

// One step of a transform. All work on arrays of size() floats that hold `points` complex values, real parts in the
// first half and imaginary parts in the second, or `points` pairs of neighbouring real samples.
struct FFTStage {
    std::int32_t points = 0;         // complex points of the whole transform, half the size
    std::int32_t butterflies = 0;    // of this stage that have different twiddles
    std::int32_t stride = 0;         // of the points that one of them leaves together
    const float* twiddles = nullptr; // layout: FFTPlan.cpp
};

struct FFTKernels {
    // Runs groups `from` to `to` of a stage; a group is what a stage cannot divide. Input and output never overlap,
    // except with split and join, which allow them to be the same.
    using Pass = void (*)(const FFTStage& stage, const float* in, float* out, std::int32_t from,
                          std::int32_t to) noexcept REALTIME;
    // For half-complex spectra of 2 `half` floats: out is the sum of a[i] b[i] over all factors, or that is added to
    // it, on bins from to to, multiples of productGroup.
    using Product = void (*)(const float* const* a, const float* const* b, std::int32_t factors, float* out,
                             std::int32_t half, std::int32_t from, std::int32_t to) noexcept REALTIME;
    static constexpr std::int32_t productGroup = 16;

    Pass firstOfPairs; // radix 8, from pairs of samples
    Pass first;        // radix 8, from complex values
    Pass middle2;      // radix 2, 4 and 8
    Pass middle4;
    Pass middle8;
    Pass lastToPairs2; // the same without twiddles, to pairs of samples, imaginary part first
    Pass lastToPairs4;
    Pass lastToPairs8;
    Pass split; // from the transform of the pairs to the half-complex spectrum of the samples
    Pass join;  // and back, real and imaginary parts exchanged
    Product multiply;
    Product multiplyAdd;

    static const FFTKernels& plain() noexcept REALTIME;   // the reference, on every machine
    static const FFTKernels* avx2() noexcept REALTIME;    // null if this machine or this build has none
    static const FFTKernels& fastest() noexcept REALTIME; // chosen once, when the library is loaded

private:
    // Data, not a function: nothing of the file that is compiled for AVX2 runs before the machine has been asked.
    static const FFTKernels* const wide;
};
