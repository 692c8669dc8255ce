// Time that never runs back.
// Threads: any.
#pragma once

#include "base/IntervalTimer.h"

#include <cstdint>
#include <memory>

std::uint32_t millisecondTicks() noexcept; // wraps after 49.7 days: compare by unsigned subtraction

std::unique_ptr<IntervalTimer> createIntervalTimer(); // starts at 0

// A stopwatch on a clock of the caller's, such as that of a test. Its only state is the tick of the last reset.
class TickTimer final : public IntervalTimer {
public:
    using Ticks = std::uint32_t (*)() noexcept;

    explicit TickTimer(Ticks clock) : ticks(clock), start(clock()) {}
    std::uint32_t elapsed() const override { return ticks() - start; }
    void reset() override { start = ticks(); }

private:
    Ticks ticks;
    std::uint32_t start;
};
