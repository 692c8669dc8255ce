#include "eq/EQFilter.h"

#include "eq/BandDesign.h"
#include "tests/eq/FilterRig.h"
#include "tests/support/SectionResponse.h"

#include <gtest/gtest.h>

#include <array>
#include <numeric>
#include <random>

namespace {

constexpr double turn = 2.0 * std::numbers::pi;

// A filter beside a processor that shows which rows the filter queues for one block.
struct CoefficientRig : FilterRig {
    explicit CoefficientRig(bool gainMoves = false)
        : filter(environment, 8, gainMoves ? 1 : 4), shown(environment, 8, gainMoves ? 1 : 4) {
        filter.gainModulated = gainMoves;
        calculate(16); // the stream has begun: changes from here on are glides
    }

    void calculate(std::int32_t count) {
        shown.getRows(); // the queues hold one block
        restart(count);
        environment.beginCycle();
        filter.calculateCoefficients(count, shown);
        environment.runCycle(count, false);
    }

    void restart(std::int32_t count) {
        wave::BasicBlock<float> in(environment), out(environment);
        shown.beginBlock(in, out, count);
        if (!shown.getRows().runLengths().empty())
            shown.process(count);
    }

    // As designed for the present settings and this gain.
    std::vector<double> designed(float gainDb, SectionForm form) {
        AnalogFilterPrototype prototype;
        std::vector<double> row(40);
        const float w = static_cast<float>(
            turn * std::exp2(static_cast<double>(filter.frequency.parameter().getTarget())) / 48000.0);
        designBand(filter.shape, filter.slope, gainDb, filter.q.parameter().getTarget(), static_cast<double>(w),
                   prototype, turn * flatTiltHz / 48000.0);
        coefficients(prototype, row, CoefficientCalculation::magnitudeMatch, form);
        row.resize(sectionLength * prototype.used().size());
        return row;
    }

    std::vector<double> shownRow(std::size_t run) const {
        const RowQueue& rows = shown.getRows();
        return {rows.row(run), rows.row(run) + rows.getRowLength()};
    }

    std::span<const std::uint32_t> runs() const { return shown.getRows().runLengths(); }

    EQFilter filter;
    BiquadProcessor shown;
};

void expectNear(const std::vector<double>& a, const std::vector<double>& b, double tolerance) {
    ASSERT_EQ(a.size(), b.size());
    for (std::size_t i = 0; i < a.size(); ++i)
        ASSERT_NEAR(a[i], b[i], tolerance) << i;
}

TEST(EQFilter, FadesSmallGainsIntoTheDrySignal) {
    struct Case {
        float gain, designed, scale;
    };
    for (const Case& each : {Case{0.03f, 0.03f, 0.6f}, Case{0.005f, 0.01f, 0.1f}, Case{-0.005f, -0.01f, 0.1f},
                             Case{0.0f, 0.01f, 0.0f}, Case{3.0f, 3.0f, 1.0f}}) {
        CoefficientRig rig;
        rig.filter.gain.assign(each.gain);
        for (int i = 0; i < 40; ++i)
            rig.calculate(256);
        ASSERT_EQ(rig.runs().size(), 1u);
        expectNear(rig.shownRow(0), rig.designed(each.designed, SectionForm::direct), 1e-6);
        EXPECT_NEAR(*rig.shown.getScales().row(0), each.scale, 1e-4f) << each.gain;
    }
}

TEST(EQFilter, ABellAtNoGainHandsOnTheBlockOfItsInput) {
    FilterRig rig;
    EQFilter filter(rig.environment, 8, 1);
    filter.input = &rig.inputs[0];
    rig.run(filter, sine(1000.0, 512));
    EXPECT_EQ(filter.getOutput(), rig.inputs[0].getOutput());
}

TEST(EQFilter, QueuesRunsThatAddUpToTheBlockOnAllThreeWays) {
    std::mt19937 random(3);
    const auto any = [&](float low, float high) { return std::uniform_real_distribution<float>(low, high)(random); };
    for (const bool gainMoves : {false, true}) {
        CoefficientRig rig(gainMoves);
        std::size_t most = 0;
        for (int block = 0; block < 3000; ++block) {
            if (block % 7 == 0)
                rig.filter.frequency.assign(any(4.0f, 15.0f));
            if (block % 11 == 0)
                rig.filter.gain.assign(any(-30.0f, 30.0f));
            if (block % 13 == 0)
                rig.filter.q.assign(any(0.1f, 10.0f));
            const auto count = static_cast<std::int32_t>(1 + random() % 256);
            rig.calculate(count);
            ASSERT_EQ(std::accumulate(rig.runs().begin(), rig.runs().end(), 0u), static_cast<std::uint32_t>(count));
            const std::span<const std::uint32_t> scaled = rig.shown.getScales().runLengths();
            ASSERT_EQ(std::accumulate(scaled.begin(), scaled.end(), 0u), static_cast<std::uint32_t>(count));
            if (!gainMoves) {
                ASSERT_LE(rig.runs().size(), static_cast<std::size_t>(count) / 4 + 2) << "looks are 4 samples apart";
            }
            most = std::max(most, rig.runs().size());
        }
        EXPECT_EQ(most > 64, gainMoves);
    }
}

TEST(EQFilter, FollowsAGlideOfTheFrequencyInTenthsOfAnOctave) {
    CoefficientRig rig;
    rig.filter.gain.parameter().setValue(6.0f, 0.0f);
    rig.calculate(256);
    rig.filter.frequency.parameter().setValue(14.0f, 20.0f); // 4 octaves in 960 samples: one every 240
    rig.calculate(256);
    EXPECT_GE(rig.runs().size(), 8u);
    EXPECT_LE(rig.runs().size(), 16u); // of 24 samples, or the rest to the next look at all settings
    for (int i = 0; i < 4; ++i)
        rig.calculate(256);
    ASSERT_EQ(rig.runs().size(), 1u);
    expectNear(rig.shownRow(0), rig.designed(6.0f, SectionForm::direct), 1e-9);
}

double distanceDb(const std::vector<double>& a, const std::vector<double>& b) {
    double worst = 0.0;
    for (double w = 0.001; w < 3.0; w *= 1.3)
        worst = std::max(worst, std::fabs(cascadePowerDb(a, SectionForm::stateVariable, w) -
                                          cascadePowerDb(b, SectionForm::stateVariable, w)));
    return worst;
}

TEST(EQFilter, AMovingGainIsInterpolatedWithinADbAndDesignedWhereItStandsOrJumps) {
    struct Case {
        FilterShape shape;
        FilterSlope slope;
        float log2Hz; // the last is so far up that its sections are flat at small gains, and have no poles
    };
    for (const Case& each :
         {Case{FilterShape::bell, FilterSlope::db12, 10.0f}, Case{FilterShape::bell, FilterSlope::db96, 10.0f},
          Case{FilterShape::tiltShelf, FilterSlope::db24, 10.0f},
          Case{FilterShape::highShelf, FilterSlope::db48, 15.0f}}) {
        CoefficientRig rig(true);
        rig.filter.shape = each.shape;
        rig.filter.slope = each.slope;
        rig.filter.frequency.parameter().setValue(each.log2Hz, 0.0f);
        rig.filter.gain.parameter().setValue(-6.5f, 0.0f);
        rig.calculate(256);
        // 12 dB through 0, at 80 samples a dB and at steps that fall between the dBs.
        for (const auto [from, to, samples] :
             {std::array{-6.5f, 5.5f, 960.0f}, std::array{5.5f, -6.5f, 53.0f}, std::array{-6.5f, 5.5f, 53.0f}}) {
            rig.filter.gain.parameter().setValue(to, (samples + 0.5f) / 48.0f);
            for (int block = 0; static_cast<float>(block * 256) < samples; ++block) {
                rig.calculate(256);
                EXPECT_GT(rig.runs().size(), samples < 100.0f ? 40u : block < 3 ? 250u : 180u);
                std::uint32_t sample = 0;
                for (std::size_t run = 0; run + 1 < rig.runs().size(); sample += rig.runs()[run++]) {
                    const float gain =
                        from + (to - from) * static_cast<float>(block * 256 + static_cast<int>(sample)) / samples;
                    if (run % 3 == 0 && std::fabs(gain) > 0.05f) {
                        EXPECT_LT(distanceDb(rig.shownRow(run), rig.designed(gain, SectionForm::stateVariable)), 0.02)
                            << gain << " dB, shape " << static_cast<int>(each.shape);
                    }
                }
            }
            rig.calculate(256);
            expectNear(rig.shownRow(0), rig.designed(to, SectionForm::stateVariable), 1e-12);
        }
        rig.filter.gain.parameter().setValue(-20.0f, 0.03f); // a jump in a sample
        rig.calculate(256);
        ASSERT_GT(rig.runs().size(), 1u);
        expectNear(rig.shownRow(1), rig.designed(-20.0f, SectionForm::stateVariable), 1e-12);
    }
}

// Rows and scales, a set for each sample: the gain of 1,530 samples swings through 0, jumps, stands and goes on, and
// the frequency jumps and glides under it.
std::vector<double> movingRows(std::size_t block, FilterSlope slope) {
    CoefficientRig rig(true);
    rig.filter.slope = slope;
    Sound gains(1530);
    for (std::size_t i = 0; i < gains.size(); ++i)
        gains[i] =
            i % 510 > 400 ? gains[i - 1] : (i < 765 ? 0.9f : -25.0f) + 4.0f * std::sin(0.02f * static_cast<float>(i));
    rig.inputs[0].setSamples(gains);
    rig.filter.gain.connect(&rig.inputs[0]);
    std::vector<double> all;
    for (std::size_t done = 0; done < gains.size(); done += block) {
        if (done == 510 || done == 1275)
            rig.filter.frequency.parameter().setValue(done == 510 ? 11.0f : 8.0f, 0.0f);
        rig.calculate(static_cast<std::int32_t>(block));
        const std::span<const std::uint32_t> scaled = rig.shown.getScales().runLengths();
        std::vector<double> scales;
        for (std::size_t run = 0; run < scaled.size(); ++run)
            scales.insert(scales.end(), scaled[run], static_cast<double>(*rig.shown.getScales().row(run)));
        std::size_t sample = 0;
        for (std::size_t run = 0; run < rig.runs().size(); ++run)
            for (std::uint32_t i = 0; i < rig.runs()[run]; ++i) {
                const std::vector<double> row = rig.shownRow(run);
                all.insert(all.end(), row.begin(), row.end());
                all.push_back(scales.at(sample++));
            }
    }
    return all;
}

TEST(EQFilter, AMovingGainGetsTheSameRowsHoweverTheHostCutsTheTime) {
    for (const FilterSlope slope : {FilterSlope::db12, FilterSlope::db48}) {
        const std::vector<double> sampleBySample = movingRows(1, slope);
        EXPECT_EQ(sampleBySample, movingRows(3, slope));
        EXPECT_EQ(sampleBySample, movingRows(255, slope));
    }
}

TEST(EQFilter, RunsABrickwallWithClearedMemoryAndAllElseFromThePresentInput) {
    FilterRig rig;
    EQFilter filter(rig.environment, 8, 4);
    filter.input = &rig.inputs[0];
    filter.frequency.parameter().setValue(5.0f, 0.0f); // so slow that its start is not over with the fade
    rig.run(filter, Sound(256, 0.5f));
    EXPECT_EQ(filter.getProcessor().resetMode.get(), BiquadProcessor::ResetMode::resetFollowInput);
    filter.slope = FilterSlope::brickwall;
    filter.shape = FilterShape::lowPass;
    EXPECT_EQ(filter.getProcessor().resetMode.get(), BiquadProcessor::ResetMode::resetClear);
    const Sound cleared = rig.run(filter, Sound(48000, 0.5f));
    EXPECT_EQ(cleared[0], 0.5f); // the bell before
    EXPECT_LT(cleared[600], 0.45f);
    EXPECT_EQ(filter.getProcessor().getSectionCount(), 6u);
    filter.slope = FilterSlope::db12;
    for (const float sample : rig.run(filter, Sound(2000, 0.5f)))
        ASSERT_NEAR(sample, 0.5f, 0.002f); // DC gain 1, and as if it had always been so
}

} // namespace
