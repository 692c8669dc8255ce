// A gain.
// Threads: those of wave::Producer.
#pragma once

#include "wave/Filter.h"
#include "wave/FloatParameterBus.h"

class VolumeFilter final : public wave::Filter {
public:
    explicit VolumeFilter(wave::Environment& owner, float initialGain = 1.0f)
        : Filter(owner), gain(owner, initialGain) {}

    FloatParameterBus gain;               // linear
    wave::Producer* modulation = nullptr; // a second gain; not owned, may be null

    // At gain 0 it hands on silence, at gain 1 without modulation its input, and touches no sample in either case.
    void filter(const wave::BasicBlock<float>& inputBlock, wave::BasicBlock<float>& outputBlock, std::int32_t count,
                std::uint32_t mode) noexcept REALTIME override;
};
