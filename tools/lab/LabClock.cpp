#include "tools/lab/LabClock.h"

#include "platform/Clock.h"

#include <cstdint>

namespace {

double elapsedMs = 0.0;

std::uint32_t ticks() noexcept {
    return static_cast<std::uint32_t>(elapsedMs);
}

} // namespace

void labClock::advance(double ms) {
    elapsedMs += ms;
}

std::unique_ptr<IntervalTimer> labClock::makeTimer() {
    return std::make_unique<TickTimer>(ticks);
}
