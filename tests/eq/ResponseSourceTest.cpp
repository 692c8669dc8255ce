#include "eq/EQResponses.h"
#include "eq/NaturalPhaseFrequencyResponseSource.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using Mapping = DiscreteFrequencyResponseSource::Mapping;
using Complex = std::complex<float>;

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

TEST(CascadeResponse, LeavesAPoleOnDcOut) {
    EXPECT_EQ(cascadeResponse(nullptr, 0, 1.0), 1.0);
    const double pole[] = {1.0, 0.0, 0.0, -1.0, 0.0, 0.5, 0.0, 0.0, 0.0, 0.0};
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
