#include "eq/MagnitudeMatch.h"
#include "eq/BandDesign.h"
#include "tests/support/SectionResponse.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

namespace {

constexpr double turn = 2.0 * 3.141592653589793;

struct Band {
    FilterShape shape = FilterShape::bell;
    FilterSlope slope = FilterSlope::db12;
    double frequencyHz = 1000.0;
    float q = 1.0f;
    float gainDb = 0.0f;
    double sampleRate = 48000.0;

    double radians(double hz) const { return turn * hz / sampleRate; }
};

struct Designed {
    explicit Designed(const Band& band, SectionForm wantedForm = SectionForm::direct) : form(wantedForm) {
        designBand(band.shape, band.slope, band.gainDb, band.q, band.radians(band.frequencyHz), prototype,
                   band.radians(flatTiltHz));
        coefficients(prototype, numbers, CoefficientCalculation::magnitudeMatch, form);
    }

    std::span<const double> rows() const {
        return std::span(numbers).first(sectionLength * static_cast<std::size_t>(prototype.sectionCount));
    }
    double digitalDb(double w) const { return cascadePowerDb(rows(), form, w); }
    double analogDb(double w) { return 10.0 * std::log10(prototype.squaredMagnitude(w)); }

    AnalogFilterPrototype prototype;
    std::array<double, sectionLength * AnalogFilterPrototype::maxSections> numbers{};
    SectionForm form;
};

double worstError(const Band& band, double fromHz, double toHz) {
    Designed designed(band);
    double worst = 0.0;
    for (double hz = fromHz; hz <= toHz; hz *= 1.01)
        worst = std::max(worst, std::fabs(designed.digitalDb(band.radians(hz)) - designed.analogDb(band.radians(hz))));
    return worst;
}

TEST(MagnitudeMatch, FollowsBellsWhereABilinearTransformWouldCramp) {
    EXPECT_LT(worstError({.q = 1.0f, .gainDb = 6.0f}, 20.0, 23000.0), 0.01);
    const Band high{.frequencyHz = 15000.0, .q = 4.0f, .gainDb = 12.0f};
    EXPECT_LT(worstError(high, 20.0, 20000.0), 0.15);
    Designed peak(high);
    EXPECT_NEAR(peak.digitalDb(high.radians(15000.0)), 12.0, 0.01);
    EXPECT_LT(worstError({.frequencyHz = 30000.0, .q = 1.0f, .gainDb = 12.0f, .sampleRate = 44100.0}, 20.0, 20000.0),
              0.5);
}

} // namespace
