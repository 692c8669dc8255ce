#include "eq/MagnitudeMatch.h"

#include "tests/support/DesignSweep.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

double digitalDb(const DesignedBand& designed, double w) {
    return cascadePowerDb(designed.rows(), designed.form, w);
}

double analogDb(DesignedBand& designed, double w) {
    return 10.0 * std::log10(designed.prototype.squaredMagnitude(w));
}

double worstError(const Band& band, double fromHz, double toHz) {
    DesignedBand designed(band);
    double worst = 0.0;
    for (double hz = fromHz; hz <= toHz; hz *= 1.01)
        worst =
            std::max(worst, std::fabs(digitalDb(designed, band.radians(hz)) - analogDb(designed, band.radians(hz))));
    return worst;
}

TEST(MagnitudeMatch, FollowsBellsWhereABilinearTransformWouldCramp) {
    EXPECT_LT(worstError({.q = 1.0f, .gainDb = 6.0f}, 20.0, 23000.0), 0.01);
    const Band high{.frequencyHz = 15000.0, .q = 4.0f, .gainDb = 12.0f};
    EXPECT_LT(worstError(high, 20.0, 20000.0), 0.15);
    EXPECT_NEAR(digitalDb(DesignedBand(high), high.radians(15000.0)), 12.0, 0.01);
    EXPECT_LT(worstError({.frequencyHz = 30000.0, .q = 1.0f, .gainDb = 12.0f, .sampleRate = 44100.0}, 20.0, 20000.0),
              0.5);
}

TEST(MagnitudeMatch, FollowsLowAndMiddleBandsOfEveryShape) {
    for (const double hz : {20.0, 150.0, 1000.0}) {
        for (const float q : {0.5f, 1.0f, 4.0f}) {
            for (const FilterShape shape : {FilterShape::lowShelf, FilterShape::highPass, FilterShape::highShelf,
                                            FilterShape::tiltShelf, FilterShape::bell, FilterShape::notch}) {
                const Band band{shape, FilterSlope::db12, hz, q, 9.0f, 96000.0};
                EXPECT_LT(worstError(band, 10.0, hz * 0.97), 0.1) << static_cast<int>(shape) << " " << hz << " " << q;
                EXPECT_LT(worstError(band, hz * 1.03, 20000.0), 0.35)
                    << static_cast<int>(shape) << " " << hz << " " << q;
            }
        }
    }
}

TEST(MagnitudeMatch, TheFitMeetsItsFivePoints) {
    int met = 0;
    for (const FilterShape shape : {FilterShape::lowPass, FilterShape::lowShelf, FilterShape::highPass,
                                    FilterShape::tiltShelf, FilterShape::bell, FilterShape::bandPass}) {
        for (const double hz : {50.0, 900.0, 6000.0}) {
            AnalogFilterPrototype prototype;
            Band{.shape = shape, .frequencyHz = hz, .q = 1.5f, .gainDb = 7.0f}.designTo(prototype);
            BiquadPrototype& section = prototype.sections[0];
            const MatchPoints points = matchPoints(prototype, 0);
            std::array<double, sectionLength> row{};
            ASSERT_EQ(fitSection(section, points, row, SectionForm::direct), SectionFit::matched);
            const double top = section.squaredMagnitude(points.top > 0.0 ? points.top : std::numbers::pi);
            // Where the top had to give way the other points still hold.
            for (const double w : {1e-9, points.a, points.b, points.c}) {
                const double wanted = section.squaredMagnitude(w);
                if (wanted < 1e-12)
                    continue;
                EXPECT_NEAR(static_cast<double>(sectionPower(row, SectionForm::direct, w)) / wanted, 1.0, 1e-5)
                    << static_cast<int>(shape) << " " << hz << " at " << w;
            }
            const double atNyquist = static_cast<double>(sectionPower(row, SectionForm::direct, std::numbers::pi));
            met += std::fabs(atNyquist / top - 1.0) < 1e-6;
        }
    }
    EXPECT_GE(met, 12); // of 18
}

TEST(MagnitudeMatch, PointsThatCannotBeMetGiveTheNearestStableSection) {
    std::mt19937 random(7);
    const auto between = [&](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    int held = 0;
    for (int round = 0; round < 20000; ++round) {
        constexpr FilterShape shapes[] = {FilterShape::highPass, FilterShape::tiltShelf, FilterShape::bell,
                                          FilterShape::notch};
        AnalogFilterPrototype prototype;
        Band{shapes[random() % 4], FilterSlope::db48, std::exp(between(2.0, 10.0)),
             static_cast<float>(std::exp(between(-3.0, 3.6))), static_cast<float>(between(-30.0, 30.0))}
            .designTo(prototype);
        const MatchPoints anywhere{between(0.001, 3.1), between(0.001, 3.1), between(0.001, 3.1), between(2.5, 3.14)};
        for (const SectionForm form : {SectionForm::direct, SectionForm::stateVariable}) {
            std::array<double, sectionLength> row{};
            held += fitSection(prototype.sections[random() % 4], anywhere, row, form) == SectionFit::held;
            for (const double number : row)
                ASSERT_TRUE(std::isfinite(number));
            ASSERT_LE(poleRadius(row, form), 1.0 - 0.999e-9);
        }
    }
    EXPECT_GT(held, 1000);
}

TEST(MagnitudeMatch, EveryDesignIsFiniteAndStableAndAlikeInBothForms) {
    for (const FilterShape shape : {FilterShape::lowPass, FilterShape::lowShelf, FilterShape::highPass,
                                    FilterShape::highShelf, FilterShape::tiltShelf, FilterShape::bell,
                                    FilterShape::bandPass, FilterShape::notch, FilterShape::flatTilt}) {
        DesignSweep sweep;
        for (std::int32_t slope = 0; slope < 10; ++slope)
            for (const double sampleRate : {44100.0, 192000.0})
                for (double hz = 10.0; hz < 30001.0; hz *= 1.87)
                    for (const float q : {0.025f, 0.1f, 0.4f, 1.0f, 3.0f, 12.0f, 40.0f})
                        for (const float gain : {-30.0f, -6.0f, 0.02f, 3.0f, 30.0f})
                            sweep.add({shape, static_cast<FilterSlope>(slope), hz, q, gain, sampleRate});
        EXPECT_GT(sweep.designs, 8000);
        EXPECT_EQ(sweep.notFinite, 0) << static_cast<int>(shape);
        EXPECT_EQ(sweep.unstable, 0) << static_cast<int>(shape);
        EXPECT_EQ(sweep.heldSections, 0) << static_cast<int>(shape);
        EXPECT_LT(sweep.worstFormDifferenceDb, 1e-6) << static_cast<int>(shape);
    }
}

} // namespace
