// A band's settings as a user gives them, and all that is designed from them.
// Threads: any.
#pragma once

#include "eq/BandDesign.h"
#include "eq/SectionCoefficients.h"

#include <array>
#include <numbers>
#include <span>

struct Band {
    FilterShape shape = FilterShape::bell;
    FilterSlope slope = FilterSlope::db12;
    double frequencyHz = 1000.0;
    float q = 1.0f;
    float gainDb = 0.0f;
    double sampleRate = 48000.0;

    double radians(double hz) const { return 2.0 * std::numbers::pi * hz / sampleRate; }
    void designTo(AnalogFilterPrototype& prototype) const {
        designBand(shape, slope, gainDb, q, radians(frequencyHz), prototype, radians(flatTiltHz));
    }
};

struct DesignedBand {
    explicit DesignedBand(const Band& band, SectionForm wantedForm = SectionForm::direct,
                          CoefficientCalculation calculation = CoefficientCalculation::magnitudeMatch)
        : form(wantedForm) {
        band.designTo(prototype);
        coefficients(prototype, numbers, calculation, form);
    }

    std::span<const double> rows() const {
        return std::span(numbers).first(sectionLength * static_cast<std::size_t>(prototype.sectionCount));
    }

    AnalogFilterPrototype prototype;
    std::array<double, sectionLength * AnalogFilterPrototype::maxSections> numbers{};
    SectionForm form;
};
