// How much of a signal lies above a threshold.
// Threads: those of wave::Producer.
#pragma once

#include "wave/Filter.h"
#include "wave/FloatParameterBus.h"

// Per sample the fraction that must go for the magnitude to come down to the threshold: 0 at and below it, towards 1
// far above.
class Detector final : public wave::Filter {
public:
    explicit Detector(wave::Environment& owner) : Filter(owner), threshold(owner, 0.0f, -180.0f, 180.0f) {}

    FloatParameterBus threshold; // dB

    void filter(const wave::BasicBlock<float>& inputBlock, wave::BasicBlock<float>& outputBlock, std::int32_t count,
                std::uint32_t mode) noexcept REALTIME override;
};
