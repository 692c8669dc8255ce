// Solo and auto gain of the loaded equalizer, measured on sound.
#include "tests/support/EqualizerBench.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>

namespace {

constexpr std::size_t length = 24000;

// Of the steady second half, in dB of a full sine's amplitude.
double levelDb(const std::vector<float>& samples) {
    double power = 0.0;
    for (std::size_t i = samples.size() / 2; i < samples.size(); ++i)
        power += static_cast<double>(samples[i]) * static_cast<double>(samples[i]);
    return 10.0 * std::log10(std::max(4.0 * power / static_cast<double>(samples.size()), 1e-20));
}

double loudestDb(EqualizerBench& bench, double hz, double amplitude, std::size_t channel = 0) {
    const Channels input(bench.channels(), sine(hz, amplitude, length));
    return levelDb(bench.render(input)[channel]);
}

void useBell(EqualizerBench& bench, double gainDb) {
    bench.set("Band 1 Gain", gainDb);
    bench.set("Band 1 Used", "Used");
}

} // namespace

TEST(EqualizerSolo, ABellIsHeardAtItsOwnGainAndNothingElseIs) {
    for (const double gainDb : {12.0, -12.0}) {
        EqualizerBench bench(ZELK_PLUGIN_FILE);
        useBell(bench, gainDb);
        bench.set("Band 1 Solo", "Enabled");
        bench.set("Solo Gain", 3.0);
        bench.restart();
        EXPECT_NEAR(loudestDb(bench, 1000.0, 0.01), -40.0 + std::max(gainDb, 0.0) + 3.0, 0.1) << gainDb;
        EXPECT_LT(loudestDb(bench, 60.0, 0.01), -70.0) << "far below the band";
        EXPECT_LT(loudestDb(bench, 12000.0, 0.01), -60.0) << "far above the band";
    }
}

TEST(EqualizerSolo, AShelfIsHeardWhereItActs) {
    EqualizerBench bench(ZELK_PLUGIN_FILE);
    bench.set("Band 3 Shape", "High Shelf");
    bench.set("Band 3 Frequency", "4 kHz");
    bench.set("Band 3 Gain", "-6 dB");
    bench.set("Band 3 Used", "Used");
    bench.set("Band 3 Solo", "Enabled");
    bench.restart();
    EXPECT_NEAR(loudestDb(bench, 14000.0, 0.01), -40.0, 0.5);
    EXPECT_LT(loudestDb(bench, 300.0, 0.01), -90.0);
}

TEST(EqualizerSolo, TheLimiterBringsALoudBandDown) {
    EqualizerBench bench(ZELK_PLUGIN_FILE);
    useBell(bench, 18.0);
    bench.set("Band 1 Solo", "Enabled");
    bench.restart();
    const double level = loudestDb(bench, 1000.0, 0.5); // -6 dB and 18 dB more
    EXPECT_LT(level, -5.5);
    EXPECT_GT(level, -8.0);
}

TEST(EqualizerSolo, AMidBandSoundsOnBothSidesAndALeftBandOnTheLeftAlone) {
    EqualizerBench mid(ZELK_PLUGIN_FILE);
    useBell(mid, 0.5);
    mid.set("Band 1 Stereo Placement", "Mid");
    mid.set("Band 1 Solo", "Enabled");
    mid.restart();
    EXPECT_NEAR(loudestDb(mid, 1000.0, 0.01, 0), -39.5, 0.1);
    EXPECT_NEAR(loudestDb(mid, 1000.0, 0.01, 1), -39.5, 0.1);

    EqualizerBench left(ZELK_PLUGIN_FILE);
    useBell(left, 0.5);
    left.set("Band 1 Stereo Placement", "Left");
    left.set("Band 1 Solo", "Enabled");
    left.restart();
    EXPECT_NEAR(loudestDb(left, 1000.0, 0.01, 0), -39.5, 0.1);
    EXPECT_LT(loudestDb(left, 1000.0, 0.01, 1), -150.0);
}

TEST(EqualizerSolo, TheLastSoloedBandInUseWins) {
    EqualizerBench bench(ZELK_PLUGIN_FILE);
    useBell(bench, 0.5);
    bench.set("Band 1 Solo", "Enabled");
    bench.set("Band 9 Frequency", "8 kHz");
    bench.set("Band 9 Used", "Used");
    bench.set("Band 9 Solo", "Enabled");
    bench.restart();
    EXPECT_LT(loudestDb(bench, 1000.0, 0.01), -60.0);
    bench.set("Band 9 Used", "Unused");
    bench.restart();
    EXPECT_GT(loudestDb(bench, 1000.0, 0.01), -41.0);
}

TEST(EqualizerAutoGain, LoudnessStaysNearThatOfTheInput) {
    EqualizerBench bench(ZELK_PLUGIN_FILE);
    bench.set("Auto Gain", "On");
    useBell(bench, 0.0);
    bench.restart();
    EXPECT_NEAR(loudestDb(bench, 5000.0, 0.1), -20.0, 0.001) << "a flat curve needs no gain";

    bench.set("Band 1 Shape", "Low Cut");
    bench.set("Band 1 Frequency", "30 kHz");
    bench.set("Band 1 Slope", "96 dB/oct");
    bench.set("Output Level", "0 dB");
    bench.restart();
    // Everything is cut: the compensation stops at 30 dB. The design alone at 19 kHz, then with it.
    const double with = loudestDb(bench, 19000.0, 0.1);
    bench.set("Auto Gain", "Off");
    bench.restart();
    EXPECT_NEAR(with - loudestDb(bench, 19000.0, 0.1), 30.0, 0.01);
}

TEST(EqualizerAutoGain, ABroadLiftIsTakenBack) {
    for (const char* placement : {"Stereo", "Left"}) {
        EqualizerBench bench(ZELK_PLUGIN_FILE);
        bench.set("Auto Gain", "On");
        bench.set("Band 1 Shape", "Low Shelf");
        bench.set("Band 1 Frequency", "30 kHz"); // all of the grid
        bench.set("Band 1 Slope", "96 dB/oct");
        bench.set("Band 1 Stereo Placement", placement);
        useBell(bench, 8.0);
        bench.restart();
        // One channel of two counts half: 8 dB lift, 4 dB back.
        const bool left = placement == std::string("Left");
        EXPECT_NEAR(loudestDb(bench, 500.0, 0.1, 0), -20.0 + (left ? 4.0 : 0.0), 0.05) << placement;
        EXPECT_NEAR(loudestDb(bench, 500.0, 0.1, 1), -20.0 - (left ? 4.0 : 0.0), 0.05) << placement;
    }
}

TEST(EqualizerAutoGain, SurroundChannelsCountByTheirPlaceAndTheLfeDoesNot) {
    const auto level = [](const char* speakers) {
        EqualizerBench bench(ZELK_PLUGIN_FILE, 6); // 5.1
        bench.set("Auto Gain", "On");
        bench.set("Band 1 Shape", "Low Shelf");
        bench.set("Band 1 Frequency", "30 kHz");
        bench.set("Band 1 Slope", "96 dB/oct");
        bench.set("Band 1 Speakers", speakers);
        useBell(bench, 8.0);
        bench.restart();
        return loudestDb(bench, 500.0, 0.1, 4); // the centre
    };
    const double sum = 1.0 + 1.0 + 1.41 + 1.41 + 1.0;
    EXPECT_NEAR(level("LFE"), -20.0, 0.01);
    EXPECT_NEAR(level("L/R (Front)"), -20.0 - 8.0 * 2.0 / sum, 0.05);
    EXPECT_NEAR(level("Ls/Rs (Surround)"), -20.0 - 8.0 * 2.0 * 1.41 / sum, 0.05);
}
