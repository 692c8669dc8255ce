// What the numbers of a coefficient row mean, evaluated with more digits than the row has: the forms of a section lose
// different ones near DC.
// Threads: any.
#pragma once

#include "eq/SectionCoefficients.h"

#include <cmath>
#include <complex>
#include <span>

inline long double sectionPower(std::span<const double> row, SectionForm form, double w) {
    using Real = long double;
    Real parts[4]; // numerator and denominator
    if (form == SectionForm::direct) {
        const Real c1 = std::cos(static_cast<Real>(w)), s1 = std::sin(static_cast<Real>(w));
        const Real c2 = c1 * c1 - s1 * s1, s2 = 2 * s1 * c1;
        parts[0] = row[0] + row[1] * c1 + row[2] * c2;
        parts[1] = row[1] * s1 + row[2] * s2;
        parts[2] = 1 + row[3] * c1 + row[4] * c2;
        parts[3] = row[3] * s1 + row[4] * s2;
    } else {
        const Real g = row[0];
        if (g == 0)
            return static_cast<Real>(row[4]) * row[4];
        const Real t = std::tan(static_cast<Real>(w) / 2);
        parts[0] = row[2] * g * g - row[4] * t * t;
        parts[1] = row[3] * g * t;
        parts[2] = g * g - t * t;
        parts[3] = (row[1] - g) * g * t;
    }
    return (parts[0] * parts[0] + parts[1] * parts[1]) / (parts[2] * parts[2] + parts[3] * parts[3]);
}

inline double cascadePowerDb(std::span<const double> rows, SectionForm form, double w) {
    long double product = 1;
    for (std::size_t i = 0; i + sectionLength <= rows.size(); i += sectionLength)
        product *= sectionPower(rows.subspan(i, sectionLength), form, w);
    return static_cast<double>(10 * std::log10(product));
}

// The larger radius of the two poles.
inline double poleRadius(std::span<const double> row, SectionForm form) {
    long double a1 = row[3];
    long double a2 = row[4];
    if (form == SectionForm::stateVariable) {
        if (row[0] == 0.0)
            return 0.0;
        const long double g2 = static_cast<long double>(row[0]) * row[0];
        const long double damping = (row[1] - static_cast<long double>(row[0])) * row[0];
        const long double n = 1 / (1 + damping + g2);
        a1 = 2 * (g2 - 1) * n;
        a2 = (1 - damping + g2) * n;
    }
    const long double discriminant = a1 * a1 / 4 - a2;
    if (discriminant < 0)
        return static_cast<double>(std::sqrt(a2));
    return static_cast<double>(std::fabs(a1) / 2 + std::sqrt(discriminant));
}
