#include "platform/Clock.h"

#include <time.h>

std::uint32_t millisecondTicks() noexcept {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    const std::uint64_t ms =
        static_cast<std::uint64_t>(now.tv_sec) * 1000u + static_cast<std::uint64_t>(now.tv_nsec) / 1000000u;
    return static_cast<std::uint32_t>(ms);
}

std::unique_ptr<IntervalTimer> createIntervalTimer() {
    return std::make_unique<TickTimer>(millisecondTicks);
}
