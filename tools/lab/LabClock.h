// The time of the sound that plays, for timers of displays: it passes as fast as the sound is made.
// Threads: main.
#pragma once

#include "base/IntervalTimer.h"

#include <memory>

namespace labClock {

void advance(double ms);
std::unique_ptr<IntervalTimer> makeTimer();

} // namespace labClock
