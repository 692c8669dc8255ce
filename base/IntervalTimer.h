// A millisecond stopwatch. The platform makes the ones that run on its clock.
// Threads: that of the object.
#pragma once

#include <cstdint>

class IntervalTimer {
public:
    virtual ~IntervalTimer() = default;
    virtual std::uint32_t elapsed() const = 0; // ms since the last reset; a wrap of the clock does no harm
    virtual void reset() = 0;
};
