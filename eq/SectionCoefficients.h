// From an analog design to the coefficient row that its digital sections run with.
// Threads: any; pure but for the prototype, whose caches may be renewed.
#pragma once

#include "eq/AnalogFilterPrototype.h"

#include <span>

// What the five numbers of a section are, and its four of state.
enum class SectionForm : std::uint32_t {
    direct = 0,        // b0, b1, b2, a1, a2; the state is x1, x2, y1, y2
    stateVariable = 1, // g, R, m0, m1, m2; the state is x1, x2, s1, s2
};

enum class CoefficientCalculation : std::int32_t {
    magnitudeMatch = 0,
    bilinear = 1,
    bilinearCompensated = 2, // as bilinear; whoever designs the prototype makes up for the bandwidth that it loses
};

inline constexpr std::size_t sectionLength = 5;
using SectionRow = std::span<double, sectionLength>;

// Fills sectionLength numbers for each section of the prototype. Elliptic designs always take the bilinear road, since
// zeros on the axis are theirs to keep.
void coefficients(AnalogFilterPrototype& prototype, std::span<double> row, CoefficientCalculation calculation,
                  SectionForm form) noexcept REALTIME;
