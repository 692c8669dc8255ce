// Follows a signal with one speed upward and another downward.
// Threads: those of wave::Producer.
#pragma once

#include "wave/Filter.h"
#include "wave/FloatParameterBus.h"

#include <cstdint>

// A time is the time to 90 % of a step.
class Capacitor final : public wave::Filter {
public:
    explicit Capacitor(wave::Environment& owner)
        : Filter(owner), attack(owner, 0.0005f, 0.0f, 10.0f), release(owner, 0.1f, 0.0f, 10.0f) {}

    FloatParameterBus attack;  // seconds, while the input is above
    FloatParameterBus release; // seconds, while it is below

    void reset() noexcept REALTIME override { state = 0.0; }
    void filter(const wave::BasicBlock<float>& inputBlock, wave::BasicBlock<float>& outputBlock, std::int32_t count,
                std::uint32_t mode) noexcept REALTIME override;

private:
    double coefficient(float seconds) const noexcept REALTIME;

    double state = 0.0;
    std::uint64_t nextPosition = 0;
};
