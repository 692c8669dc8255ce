// Digital sections that follow the magnitude of analog ones up to the top of the spectrum, without the cramping of a
// transform: each is fitted to the analog power at DC, at Nyquist and at three points between.
// Threads: any; pure but for the prototype, whose caches may be renewed.
#pragma once

#include "eq/SectionCoefficients.h"

// Radians per sample. The power at `top` is what the digital section has at Nyquist; 0 stands for Nyquist itself.
struct MatchPoints {
    double a = 0.0;
    double b = 0.0;
    double c = 0.0;
    double top = 0.0;
};

enum class SectionFit {
    matched,
    constant, // the section is flat and has become a plain gain
    held,     // its poles had to be held inside the unit circle
};

MatchPoints matchPoints(AnalogFilterPrototype& prototype, std::size_t sectionIndex) noexcept REALTIME;

SectionFit fitSection(BiquadPrototype& section, const MatchPoints& points, SectionRow row,
                      SectionForm form) noexcept REALTIME;
