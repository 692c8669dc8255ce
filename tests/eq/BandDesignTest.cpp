#include "eq/BandDesign.h"
#include "tests/support/DesignedBand.h"
#include "tests/support/SectionResponse.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

double dbAt(DesignedBand& designed, double w) {
    return 10.0 * std::log10(designed.prototype.squaredMagnitude(w));
}

TEST(BandDesign, OrdersFollowTheSlopeAndAreEvenForBandShapes) {
    EXPECT_EQ(order(FilterShape::lowPass, FilterSlope::db18), 3);
    EXPECT_EQ(order(FilterShape::highShelf, FilterSlope::db96), 16);
    EXPECT_EQ(order(FilterShape::highShelf, FilterSlope::brickwall), 16);
    EXPECT_EQ(order(FilterShape::highPass, FilterSlope::brickwall), 12);
    EXPECT_EQ(order(FilterShape::bell, FilterSlope::db6), 2);
    EXPECT_EQ(order(FilterShape::bell, FilterSlope::db18), 4);
    EXPECT_EQ(order(FilterShape::notch, FilterSlope::db72), 12);
    EXPECT_EQ(order(FilterShape::flatTilt, FilterSlope::db96), 6);
    EXPECT_TRUE(slopeIsExact(FilterShape::tiltShelf, FilterSlope::db6));
    EXPECT_FALSE(slopeIsExact(FilterShape::bandPass, FilterSlope::db6));
    EXPECT_TRUE(slopeIsExact(FilterShape::bandPass, FilterSlope::db12));
    EXPECT_FALSE(slopeIsExact(FilterShape::flatTilt, FilterSlope::db12));
}

TEST(BandDesign, TheQLawTakesAShelfFromAnEighthToFourAndComesBack) {
    EXPECT_NEAR(shelfQ(FilterShape::lowShelf, 1.0f), std::sqrt(0.5), 1e-6); // no resonance in the middle
    EXPECT_NEAR(shelfQ(FilterShape::tiltShelf, 40.0f), 4.0, 1e-4);
    EXPECT_NEAR(shelfQ(FilterShape::flatTilt, 0.025f), 0.125, 1e-5);
    for (const FilterShape shape : {FilterShape::bell, FilterShape::highShelf, FilterShape::lowPass})
        for (const float q : {0.025f, 0.3f, 1.0f, 7.0f, 40.0f})
            EXPECT_NEAR(plainQ(shape, shelfQ(shape, q)), q, 1e-5f * q);
}

TEST(BandDesign, GainIsHeldToThirtyDbAndCutsTakeTheDesignedResonance) {
    DesignedBand loud({.gainDb = 50.0f});
    EXPECT_NEAR(dbAt(loud, Band{}.radians(1000.0)), 30.0, 1e-4);
    DesignedBand cut({.shape = FilterShape::lowPass, .q = 10.0f});
    EXPECT_NEAR(dbAt(cut, Band{}.radians(1000.0)), 20.0 * std::log10(7.0710677), 1e-4);
    DesignedBand brickwall({.shape = FilterShape::lowPass, .slope = FilterSlope::brickwall, .q = 10.0f});
    EXPECT_NEAR(dbAt(brickwall, Band{}.radians(1000.0)), 0.0, 0.026); // no resonance at all
    EXPECT_LT(dbAt(brickwall, Band{}.radians(1140.0)), -89.9);
}

TEST(BandDesign, AFlatTiltPassesZeroAtItsFrequencyAndStaysInsideTheRangeOfGains) {
    for (const float gain : {-30.0f, -12.0f, 12.0f, 30.0f}) {
        for (const double hz : {20.0, 320.0, 640.0, 5000.0, 20000.0}) {
            const Band band{.shape = FilterShape::flatTilt, .frequencyHz = hz, .gainDb = gain};
            DesignedBand tilt(band);
            EXPECT_NEAR(dbAt(tilt, band.radians(hz)), 0.0, 1.2) << gain << " dB at " << hz;
            // The upper corner of the tilt, five octaves from its middle, moves up when the shift does.
            if ((gain > 0.0f) != (hz < 640.0))
                continue;
            EXPECT_LT(dbAt(tilt, band.radians(gain > 0.0f ? 20480.0 : 20.0)), 30.5) << gain << " dB at " << hz;
        }
    }
    DesignedBand middle({.shape = FilterShape::flatTilt, .frequencyHz = 640.0, .gainDb = 12.0f});
    EXPECT_FLOAT_EQ(middle.prototype.gain, std::pow(10.0f, 0.6f));
}

TEST(BandDesign, TheBilinearRoadIsTheAnalogCurveOnABentAxis) {
    for (const FilterShape shape : {FilterShape::lowPass, FilterShape::highShelf, FilterShape::bell, FilterShape::notch,
                                    FilterShape::bandPass, FilterShape::tiltShelf}) {
        for (const FilterSlope slope : {FilterSlope::db6, FilterSlope::db18, FilterSlope::db72}) {
            for (const double hz : {30.0, 3000.0, 21000.0}) {
                const Band band{.shape = shape, .slope = slope, .frequencyHz = hz, .q = 3.0f, .gainDb = 9.0f};
                for (const SectionForm form : {SectionForm::direct, SectionForm::stateVariable}) {
                    DesignedBand designed(band, form, CoefficientCalculation::bilinear);
                    const double w0 = designed.prototype.frequency;
                    for (const double w : {0.01, 0.5, 2.0, 3.0}) {
                        const double bent = w0 * std::tan(0.5 * w) / std::tan(0.5 * w0);
                        const double wanted = dbAt(designed, bent);
                        if (wanted < -120.0)
                            continue;
                        EXPECT_NEAR(cascadePowerDb(designed.rows(), form, w), wanted, 1e-3)
                            << static_cast<int>(shape) << " slope " << static_cast<int>(slope) << " " << hz;
                    }
                }
            }
        }
    }
}

} // namespace
