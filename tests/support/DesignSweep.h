// Designs band after band and keeps what must never happen: numbers that are not finite, poles on or outside the unit
// circle, two forms of one section that sound different.
// Threads: any.
#pragma once

#include "eq/MagnitudeMatch.h"
#include "tests/support/DesignedBand.h"
#include "tests/support/SectionResponse.h"

#include <algorithm>
#include <cmath>

class DesignSweep {
public:
    void add(const Band& band);

    long designs = 0;
    long sections = 0;
    long constantSections = 0;
    long heldSections = 0; // whose poles the fit had to hold inside the unit circle
    long notFinite = 0;
    long unstable = 0;
    double largestRadius = 0.0;
    double worstFormDifferenceDb = 0.0;
    Band worstForm;  // with that difference
    Band lastBroken; // not finite or unstable
    Band lastHeld;

private:
    void addSection(const Band& band, BiquadPrototype& section, std::size_t index);

    AnalogFilterPrototype prototype;
    std::array<double, sectionLength * AnalogFilterPrototype::maxSections> direct{}, stateVariable{};
};

inline void DesignSweep::add(const Band& band) {
    band.designTo(prototype);
    coefficients(prototype, direct, CoefficientCalculation::magnitudeMatch, SectionForm::direct);
    coefficients(prototype, stateVariable, CoefficientCalculation::magnitudeMatch, SectionForm::stateVariable);
    ++designs;
    for (std::size_t i = 0; i < static_cast<std::size_t>(prototype.sectionCount); ++i)
        addSection(band, prototype.sections[i], i);
}

inline void DesignSweep::addSection(const Band& band, BiquadPrototype& section, std::size_t index) {
    ++sections;
    const std::span<const double> rows[] = {std::span(direct).subspan(index * sectionLength, sectionLength),
                                            std::span(stateVariable).subspan(index * sectionLength, sectionLength)};
    if (prototype.kind == AnalogFilterPrototype::Kind::butterworth) {
        std::array<double, sectionLength> again{};
        const SectionFit fit = fitSection(section, matchPoints(prototype, index), again, SectionForm::direct);
        constantSections += fit == SectionFit::constant;
        heldSections += fit == SectionFit::held;
        if (fit == SectionFit::held)
            lastHeld = band;
    }
    for (const SectionForm form : {SectionForm::direct, SectionForm::stateVariable}) {
        const std::span<const double> row = rows[static_cast<std::size_t>(form)];
        if (!std::all_of(row.begin(), row.end(), [](double number) { return std::isfinite(number); })) {
            ++notFinite;
            lastBroken = band;
            return;
        }
        const double radius = poleRadius(row, form);
        largestRadius = std::max(largestRadius, radius);
        if (!(radius < 1.0)) {
            ++unstable;
            lastBroken = band;
        }
    }
    // At the section's frequency, beside it, where an ear would look, and near both ends.
    for (const double at : {section.frequency, section.frequency * 1.02, band.radians(1000.0), 1e-3, 3.1}) {
        const double w = std::min(at, 3.14);
        const long double one = sectionPower(rows[0], SectionForm::direct, w);
        const long double other = sectionPower(rows[1], SectionForm::stateVariable, w);
        if (one < 1e-2L && other < 1e-2L) // the bottom of a notch
            continue;
        const double difference = std::fabs(static_cast<double>(10 * std::log10(one / other)));
        if (difference > worstFormDifferenceDb) {
            worstFormDifferenceDb = difference;
            worstForm = band;
        }
    }
}
