// How long the impulse responses of the processing modes are, and by how much they delay the signal.
// Threads: any; nothing allocates.
#pragma once

#include "base/Realtime.h"
#include "eq/ProcessingTypes.h"

#include <cstdint>

struct KernelSizes {
    std::int32_t length = 0;         // samples; 0: the mode has no kernel
    std::int32_t partitionBlock = 0; // samples, transform of the deepest partitions: what the convolver delays

    // Samples. Two chains stand one behind the other, so their delays add.
    std::int32_t latency(std::int32_t chainCount) const noexcept REALTIME;
};

// sampleRate in Hz. Natural Phase has one size for all; in Linear Phase the size follows the resolution and the power
// of two at or above the rate in multiples of 48 kHz, so that the resolution in Hz stays.
KernelSizes kernelSizes(ProcessingMode mode, ProcessingResolution resolution, double sampleRate) noexcept REALTIME;

std::int32_t processingLatency(ProcessingMode mode, ProcessingResolution resolution, double sampleRate,
                               std::int32_t chainCount) noexcept REALTIME;

// Dynamic bands move the kernel at every hop, which the longest ones cannot follow.
[[nodiscard]] bool dynamicsAllowed(ProcessingMode mode, ProcessingResolution resolution) noexcept REALTIME;
