// Where a digital section meets its analog one.
// Threads: any; pure but for the prototype, whose caches may be renewed.
#pragma once

#include "eq/AnalogFilterPrototype.h"

#include <cstddef>

// Radians per sample. The power at `top` is what the digital section has at Nyquist; 0 stands for Nyquist itself.
struct MatchPoints {
    double a = 0.0;
    double b = 0.0;
    double c = 0.0;
    double top = 0.0;
};

MatchPoints matchPoints(AnalogFilterPrototype& prototype, std::size_t sectionIndex) noexcept REALTIME;
