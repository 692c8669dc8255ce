#include "analysis/EQMatchEngine.h"
#include "analysis/Decibels.h"
#include "tests/support/MatchTargets.h"

#include <gtest/gtest.h>

namespace {

template <typename Engine>
void run(Engine& engine, const std::vector<float>& curve, float sampleRate = match::rate) {
    engine.minFrequency = 10.0f;
    engine.maxFrequency = 30000.0f;
    engine.minLog2Frequency = static_cast<float>(std::log2(match::lowestHz));
    engine.maxLog2Frequency = static_cast<float>(std::log2(match::highestHz));
    engine.prepare(curve, sampleRate);
    engine.run();
}

double dbOf(const AnalogFilterPrototype& band) {
    return 20.0 * std::log10(static_cast<double>(band.gain));
}

// What it is worth over more curves, and what it costs, is told by bench_eqmatch.
TEST(EQMatchEngine, MeetsCurvesOfBellsAndRandomCurves) {
    for (std::uint32_t seed = 1; seed <= 3; ++seed) {
        EQMatchEngine engine;
        const auto errorAfter = [&](const std::vector<float>& curve, std::size_t bands) {
            run(engine, curve);
            EXPECT_LE(engine.evaluationCount(), 30000);
            return match::errorBehind(curve, engine.bands().first(std::min(bands, engine.bands().size())));
        };
        EXPECT_LT(errorAfter(match::bellCurve(seed, 1), 1), 0.005) << seed;
        EXPECT_EQ(engine.significantBandCount(), 1) << seed;
        EXPECT_LT(errorAfter(match::bellCurve(seed, 3), 8), 0.5) << seed;
        EXPECT_LT(errorAfter(match::bellCurve(seed, 8), 24), 0.4) << seed;
        const std::vector<float> curve = match::smoothCurve(seed, 1.0);
        double before = errorAfter(curve, 0);
        for (std::size_t count = 1; count <= engine.bands().size(); ++count) {
            const double error = match::errorBehind(curve, engine.bands().first(count));
            EXPECT_LT(error, before) << "every band makes it better";
            before = error;
        }
        EXPECT_LT(before, 0.5);
    }
}

TEST(EQMatchEngine, NothingGivesNoBandAndAnEndOfOneDbAShelf) {
    EQMatchEngine engine;
    engine.maxBands = 1;
    for (const std::size_t count : {0u, 1u, 2u, 1000u})
        for (const float level : {0.0f, 0.9f, 3.0f, -5.9f}) {
            run(engine, std::vector<float>(count, level));
            ASSERT_EQ(engine.bands().size(), count == 1000 && std::fabs(level) >= 1.0f ? 1u : 0u) << count;
            if (!engine.bands().empty()) {
                EXPECT_EQ(engine.bands()[0].shape, FilterShape::highShelf) << "on a tie the high end counts";
                EXPECT_NEAR(dbOf(engine.bands()[0]), static_cast<double>(level), 0.001);
            }
        }
}

TEST(EQMatchEngine, TriesCutsFromAnEndOfMinusSixDbOnAndOnlyWhatIsAllowed) {
    struct OnlyCuts final : EQMatchEngine {
        bool allowBand(FilterShape shape, std::int32_t) const override { return shape == FilterShape::highPass; }
    };
    for (const auto& [low, bands] : {std::pair{-6.0f, 1u}, {-5.999f, 0u}}) {
        OnlyCuts engine;
        engine.maxBands = 1;
        std::vector<float> curve(1000, 0.0f);
        std::fill_n(curve.begin(), 200, low);
        run(engine, curve);
        EXPECT_EQ(engine.bands().size(), bands);
    }
    std::vector<float> curve(1000, 0.0f);
    AnalogFilterPrototype cut;
    designBand(FilterShape::lowPass, FilterSlope::db24, 0.0f, 1.0f, 3000.0, cut, 640.0);
    match::addResponse(curve, cut, 1.0);
    EQMatchEngine engine;
    run(engine, curve);
    ASSERT_GE(engine.bands().size(), 1u);
    EXPECT_EQ(engine.bands()[0].shape, FilterShape::lowPass);
    EXPECT_EQ(engine.bands()[0].order, 4);
    EXPECT_NEAR(engine.bands()[0].frequency, 3000.0, 30.0);
}

TEST(EQMatchEngine, NoBellLeavesThirtyDbAndColumnsAboveTheHalfRateDoNotCount) {
    std::vector<float> curve(1000, 0.0f);
    AnalogFilterPrototype bell;
    bell.design(AnalogFilterPrototype::Kind::butterworth, FilterShape::bell, 2, 1.0f, 100.0f); // 40 dB
    bell.setFrequency(1000.0, 0.001);
    match::addResponse(curve, bell, 1.0);
    EQMatchEngine engine;
    run(engine, curve);
    ASSERT_FALSE(engine.bands().empty());
    EXPECT_EQ(engine.bands()[0].shape, FilterShape::bell);
    for (const AnalogFilterPrototype& band : engine.bands())
        EXPECT_LE(std::fabs(dbOf(band)), 30.001);

    // What lies above 16 kHz is nobody's business at 32 kHz.
    std::vector<float> wild = match::bellCurve(2, 2);
    for (std::size_t column = 0; column < wild.size(); ++column)
        if (match::hzAt(column) > 16100.0)
            wild[column] = column % 2 == 0 ? 60.0f : -60.0f;
    run(engine, wild, 32000.0f);
    for (const AnalogFilterPrototype& band : engine.bands())
        match::addResponse(wild, band, -1.0);
    for (std::size_t column = 0; match::hzAt(column) < 15000.0; ++column)
        ASSERT_NEAR(wild[column], 0.0f, 1.0f) << match::hzAt(column);
}

TEST(Decibels, TheLoopOverVectorsFollowsTheExactLogarithm) {
    std::vector<float> powers{0.0f, -0.25f, 1e-30f, 1e-10f, 1.0f, 3e38f};
    for (float power = 1e-9f; power < 1e9f; power *= 1.0173f)
        powers.push_back(power);
    std::vector<float> db = powers;
    squaredMagnitudesToDb(db);
    for (std::size_t index = 0; index < powers.size(); ++index) {
        const double exact = 10.0 * std::log10(static_cast<double>(std::fabs(powers[index])));
        EXPECT_NEAR(db[index], std::max(exact, -90.0), 1e-5) << powers[index];
    }
}

} // namespace
