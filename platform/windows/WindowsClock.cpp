#include "platform/Clock.h"
#include "platform/windows/Windows.h"

#include <mmsystem.h>

std::uint32_t millisecondTicks() noexcept {
    return timeGetTime();
}

std::unique_ptr<IntervalTimer> createIntervalTimer() {
    return std::make_unique<TickTimer>(millisecondTicks);
}
