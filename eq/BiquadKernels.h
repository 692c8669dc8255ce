// The loops that run second-order sections, one implementation an instruction set behind one table.
// Threads: any; the memory of the sections belongs to the caller.
#pragma once

#include "base/Realtime.h"

#include <cstddef>
#include <cstdint>

// One section. The sections of a pass may belong to several filters: each brings its own rows and its own memory.
struct BiquadSection {
    static constexpr std::size_t rowLength = 5;    // doubles
    static constexpr std::size_t memoryLength = 4; // doubles a channel

    const double* row = nullptr;            // of the first run; direct b0, b1, b2, a1, a2, else g, R, m0, m1, m2
    double* memory[2] = {nullptr, nullptr}; // a channel each: x1, x2, y1, y2, or x1, x2, s1, s2
};

// Some sections in a row, over one channel or over two that share the rows. Every section rounds its output to float.
struct BiquadPass {
    const BiquadSection* sections = nullptr;
    std::size_t sectionCount = 0;

    // The rows are constant inside a run. The row of the next run stands `rowStride` doubles behind, for each section.
    const std::uint32_t* runLengths = nullptr;
    std::size_t runCount = 0;
    std::size_t rowStride = 0;

    const float* input[2] = {nullptr, nullptr};
    float* output[2] = {nullptr, nullptr}; // may be the input; no other overlap
};

using BiquadKernel = void (*)(const BiquadPass&) noexcept;

struct BiquadKernels {
    BiquadKernel direct[2];        // one channel, two channels
    BiquadKernel stateVariable[2]; // one channel, two channels
};

// Plain C++, the arithmetic as it is defined.
const BiquadKernels& plainBiquadKernels() noexcept REALTIME;

// 4 doubles wide with fused multiply and add; null where the processor cannot. Differs from the plain kernels in how
// doubles are rounded, by an order of sums and by contraction, and so now and then in the last bit of a float.
const BiquadKernels* wideBiquadKernels() noexcept REALTIME;

// The fastest that this processor runs, chosen once.
const BiquadKernels& biquadKernels() noexcept REALTIME;
