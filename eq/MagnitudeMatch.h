// Digital sections that follow the magnitude of analog ones up to the top of the spectrum, without the cramping of a
// transform: each is fitted to the analog power at DC, at Nyquist and at three points between.
// Threads: any; pure but for the section, whose cache may be renewed.
#pragma once

#include "eq/MatchPoints.h"
#include "eq/SectionCoefficients.h"

enum class SectionFit {
    matched,
    constant, // the section is flat and has become a plain gain
    held,     // its poles had to be held inside the unit circle
};

// Always finite and stable; points that cannot be met cost accuracy only.
SectionFit fitSection(BiquadPrototype& section, const MatchPoints& points, SectionRow row,
                      SectionForm form) noexcept REALTIME;
