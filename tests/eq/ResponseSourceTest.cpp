#include "eq/EQResponses.h"

#include "eq/BandDesign.h"
#include "eq/NaturalPhaseFrequencyResponseSource.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace {

using Mapping = DiscreteFrequencyResponseSource::Mapping;
using Complex = std::complex<float>;

constexpr int steps = 256; // of a grid up to Nyquist at 48 kHz, as the kernel of Natural Phase has it

struct Grid {
    Grid() : mapping(false, 0.0f, 24000.0f, steps), radians(steps + 1) {
        for (int i = 0; i <= steps; ++i)
            radians[i] =
                static_cast<float>(2.0 * std::numbers::pi * static_cast<double>(mapping.frequency(i)) / 48000.0);
    }

    Mapping mapping;
    AlignedBuffer<float> radians;
};

// A band with all that can be read from it.
struct Band {
    Band(Grid& grid, FilterShape shape, double hz, float q, float gainDb, FilterSlope slope = FilterSlope::db12)
        : magnitude(grid.mapping, grid.radians, prototype)
        , analog(grid.mapping, grid.radians, prototype)
        , digital(grid.mapping, grid.radians, prototype) {
        const double turn = 2.0 * std::numbers::pi;
        designBand(shape, slope, gainDb, q, turn * hz / 48000.0, prototype, turn * flatTiltHz / 48000.0);
        coefficients(prototype, digital.row, CoefficientCalculation::magnitudeMatch, SectionForm::direct);
        magnitude.reserve(steps + 1);
        analog.resize(steps + 1);
        digital.resize(steps + 1);
    }

    AnalogFilterPrototype prototype;
    EQMagnitudeResponse magnitude;
    EQAnalogResponse analog;
    EQBiquadResponse digital;
};

TEST(ResponseMapping, PlacesBinsAndTellsItsListenersOfChanges) {
    struct Listener {
        void heard() { ++count; }
        int count = 0;
    } listener;
    Mapping mapping(false, 0.0f, 24000.0f, 256);
    mapping.changed.add(&listener, &Listener::heard);
    EXPECT_EQ(mapping.frequency(128), 12000.0f); // beyond what is stored
    EXPECT_EQ(mapping.frequency(256), 24000.0f);
    EXPECT_EQ(mapping.nearestIndex(12046.0f), 128);
    EXPECT_EQ(mapping.nearestIndex(12046.875f), 129); // half way goes up
    mapping.logarithmic = true;
    mapping.start = 20.0f;
    mapping.end = 20480.0f;
    mapping.count = 10;
    mapping.count = 10;
    EXPECT_EQ(listener.count, 4);
    for (int i = 0; i <= 10; ++i)
        EXPECT_NEAR(mapping.frequency(i), 20.0f * std::exp2(static_cast<float>(i)), 0.01f);
    EXPECT_EQ(mapping.nearestIndex(1300.0f), 6);
}

TEST(EQResponses, ComputeMagnitudesInGroupsAndOnce) {
    Grid grid;
    Band band(grid, FilterShape::bell, 3000.0, 2.0f, 9.0f, FilterSlope::db48);
    float two[2];
    band.magnitude.squaredMagnitudes(5, two);
    EXPECT_EQ(band.magnitude.getValidCount(), 8);
    EXPECT_NEAR(two[1], band.prototype.squaredMagnitude(static_cast<double>(grid.radians[6])), 1e-5);

    std::vector<float> all(steps + 1);
    band.magnitude.squaredMagnitudes(0, all);
    std::vector<Complex> analog(steps + 1), roots(steps + 1);
    band.analog.responses(0, analog);
    band.magnitude.responses(0, roots);
    for (std::size_t i = 0; i <= steps; ++i) {
        ASSERT_NEAR(all[i], std::norm(analog[i]), 2e-5f * all[i]) << i;
        ASSERT_NEAR(roots[i].real() * roots[i].real(), all[i], 1e-6f * all[i]);
    }
    EXPECT_EQ(band.analog.getValidCount(), steps + 1);

    // A cached value stays until it is told that the design has changed.
    designBand(FilterShape::bell, FilterSlope::db12, -9.0f, 2.0f, 0.4, band.prototype, 0.1);
    EXPECT_EQ(band.analog.response(34), analog[34]);
    band.analog.invalidate();
    EXPECT_NE(band.analog.response(34), analog[34]); // computed, and not stored: there is a gap below it
    EXPECT_EQ(band.analog.getValidCount(), 0);
    band.analog.response(0);
    EXPECT_EQ(band.analog.getValidCount(), 1);
    EXPECT_EQ(band.analog.responseAt(23990.0f), band.analog.response(256));
}

TEST(EQResponses, TheDigitalResponseIsThatOfTheMatchedSections) {
    Grid grid;
    Band bell(grid, FilterShape::bell, 3000.0, 1.0f, 9.0f), cut(grid, FilterShape::lowPass, 5000.0, 1.0f, 0.0f);
    for (int i = 0; i <= 100; ++i)
        for (Band* const band : {&bell, &cut})
            ASSERT_NEAR(std::norm(band->digital.response(i)) / std::norm(band->analog.response(i)), 1.0f, 0.05f) << i;
    EXPECT_EQ(cascadeResponse(nullptr, 0, 1.0), 1.0);
    const double pole[] = {1.0, 0.0, 0.0, -1.0, 0.0, 0.5, 0.0, 0.0, 0.0, 0.0}; // on DC: left out
    EXPECT_EQ(cascadeResponse(pole, 2, 0.0), 0.5);
}

class FixedSource final : public CachedDiscreteFrequencyResponseSource {
public:
    FixedSource(Mapping& grid, std::vector<Complex> wanted) : Cached(grid), given(std::move(wanted)) {}

protected:
    void computeResponses(std::int32_t start, std::span<Complex> out) noexcept REALTIME override {
        std::copy_n(given.begin() + start, out.size(), out.begin());
    }

private:
    using Cached = CachedDiscreteFrequencyResponseSource;
    std::vector<Complex> given;
};

TEST(NaturalPhaseSource, BelievesARatioNearAZeroOnlyIfItsNeighboursDo) {
    // By bins: no denominator at all; far too large; a phase that turns and comes back; one that turns and stays.
    const std::vector<Complex> digital{1.0f, 1.0f, 0.0f, 1.0f, 2e-3f, 1.0f, 5e-3f, 1.0f, 5e-3f, 1.0f};
    const std::vector<Complex> analog{1.0f, 2.0f, 1.0f, 3.0f, 0.5f, 1.0f, -5e-3f, 1.0f, -5e-3f, -1.0f};
    const std::vector<Complex> expected{1.0f, 2.0f, 2.0f, 3.0f, 3.0f, 1.0f, 1.0f, 1.0f, -1.0f, -1.0f};
    for (const std::size_t slice : {1u, 3u, 10u}) {
        Mapping mapping(false, 0.0f, 9.0f, 9);
        FixedSource numerator(mapping, analog), denominator(mapping, digital);
        NaturalPhaseFrequencyResponseSource source(mapping);
        source.numerators = {&numerator};
        source.denominators = {&denominator};
        std::vector<Complex> all(10);
        for (std::size_t at = 0; at < all.size(); at += slice)
            source.responses(static_cast<std::int32_t>(at), std::span(all).subspan(at, std::min(slice, 10 - at)));
        for (std::size_t i = 0; i < all.size(); ++i)
            EXPECT_NEAR(std::abs(all[i] - expected[i]), 0.0f, 1e-5f) << i << " in slices of " << slice;
    }
}

} // namespace
