// The largest value of the last milliseconds.
// Threads: those of wave::Producer.
#pragma once

#include "wave/Filter.h"
#include "wave/FloatParameterBus.h"

#include <cstdint>
#include <vector>

// A sliding maximum at constant cost: the queue holds, from the largest to the newest, only the values that can still
// become the largest of the window. A value leaves when it gets too old or when a newer one is at least as large.
// A hold time that grows does not bring back what has left.
class PeakHold final : public wave::Filter {
public:
    static constexpr float longestHoldMs = 200.0f;

    explicit PeakHold(wave::Environment& owner);
    ~PeakHold() override;

    FloatParameterBus holdTime; // ms, 0 to longestHoldMs

    void reset() noexcept REALTIME override;
    void filter(const wave::BasicBlock<float>& inputBlock, wave::BasicBlock<float>& outputBlock, std::int32_t count,
                std::uint32_t mode) noexcept REALTIME override;

private:
    struct Value {
        float value;
        std::uint32_t position; // samples, wraps
    };

    void makeQueue();
    std::uint32_t windowSamples(float milliseconds) const noexcept REALTIME;
    float pushed(float value, std::uint32_t window) noexcept REALTIME;

    std::vector<Value> queue; // a ring, a power of 2
    std::uint32_t mask = 0;
    std::uint32_t front = 0; // the largest
    std::uint32_t back = 0;  // behind the newest; both wrap
    std::uint32_t now = 0;   // position of the next sample
    std::uint64_t nextPosition = 0;
};
