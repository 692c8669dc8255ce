// What the kernels of Natural and Linear Phase have in common: their sizes, and the grid of frequencies on which bands
// are asked for their responses. Threads: audio between cycles, or any with the audio excluded; construction allocates.
#pragma once

#include "base/Realtime.h"
#include "eq/Convolver.h"
#include "eq/ConvolverConfiguration.h"
#include "eq/DiscreteFrequencyResponseSource.h"
#include "framework/zelk/KernelSizes.h"
#include "wave/AlignedBuffer.h"

#include <cstdint>
#include <memory>

struct KernelGrid {
    KernelGrid(ProcessingMode graphMode, const KernelSizes& graphSizes, float sampleRate);
    KernelGrid(const KernelGrid&) = delete;
    KernelGrid& operator=(const KernelGrid&) = delete;

    std::int32_t bins() const noexcept REALTIME { return frequencies.getCapacity(); }

    const ProcessingMode mode; // both of the graph; the parameters may be ahead of it
    const KernelSizes sizes;
    std::unique_ptr<Convolver::Configuration> configuration;
    DiscreteFrequencyResponseSource::Mapping mapping; // Hz, from 0 to half the sample rate
    AlignedBuffer<float> frequencies;                 // the same in radians per sample
    AlignedBuffer<float> work;                        // room for a pass over the bins
};
