// Dynamic bands of the loaded equalizer, measured on sound.
#include "tests/support/EqualizerBench.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>
#include <vector>

namespace {

constexpr double rate = 48000.0;
constexpr std::size_t second = 48000;

// Of the last tenth of the sound, in dB of a full sine's amplitude.
double endDb(const std::vector<float>& samples) {
    const std::size_t length = second / 10;
    double power = 0.0;
    for (std::size_t i = samples.size() - length; i < samples.size(); ++i)
        power += static_cast<double>(samples[i]) * static_cast<double>(samples[i]);
    return 10.0 * std::log10(std::max(2.0 * power / static_cast<double>(length), 1e-20));
}

double amplitude(double db) {
    return std::pow(10.0, db / 20.0);
}

void useDynamicBell(EqualizerBench& bench, double range, double thresholdDb) {
    bench.set("Band 1 Frequency", "1 kHz");
    bench.set("Band 1 Dynamic Range", range);
    bench.set("Band 1 Threshold", std::to_string(thresholdDb) + " dB");
    bench.set("Band 1 Used", "Used");
    bench.restart();
}

double steadyGain(EqualizerBench& bench, double levelDb, double hz = 1000.0) {
    const Channels input(2, sine(hz, amplitude(levelDb), 2 * second));
    return endDb(bench.render(input)[0]) - levelDb;
}

} // namespace

TEST(EqualizerDynamics, TheGainFollowsTheLevelAboveTheThresholdUpToTheRange) {
    for (const double range : {-12.0, 9.0}) {
        EqualizerBench bench(ZELK_PLUGIN_FILE);
        useDynamicBell(bench, range, -30.0);
        EXPECT_NEAR(steadyGain(bench, -60.0), 0.0, 0.05) << "far below the threshold";
        EXPECT_NEAR(steadyGain(bench, -5.0), range, 0.3) << "far above it";
        const double between = steadyGain(bench, -30.0); // in the middle of the knee
        EXPECT_GT(between * std::copysign(1.0, range), 0.5);
        EXPECT_LT(std::fabs(between), 0.8 * std::fabs(range));
        EXPECT_NEAR(steadyGain(bench, -5.0, 60.0), 0.0, 0.1) << "sound outside its region is not heard";
    }
}

TEST(EqualizerDynamics, APairMovesAsOne) {
    EqualizerBench bench(ZELK_PLUGIN_FILE);
    useDynamicBell(bench, -12.0, -30.0);
    const Channels input{sine(1000.0, amplitude(-5.0), 2 * second), sine(1000.0, amplitude(-50.0), 2 * second)};
    const Channels output = bench.render(input);
    EXPECT_NEAR(endDb(output[0]) + 5.0, -12.0, 0.3);
    EXPECT_NEAR(endDb(output[1]) + 50.0, -12.0, 0.3) << "the quiet channel follows the loud one";
}

TEST(EqualizerDynamics, InAutoABandReactsToWhatItHasHeardBefore) {
    EqualizerBench bench(ZELK_PLUGIN_FILE);
    bench.set("Band 1 Dynamic Range", -10.0);
    bench.set("Band 1 Threshold", "Auto");
    bench.set("Band 1 Used", "Used");
    bench.restart();
    // Whatever its level: a steady sound takes all of the range, a fall gives it back.
    EXPECT_NEAR(steadyGain(bench, -12.0), -9.9, 0.3);
    EXPECT_NEAR(steadyGain(bench, -40.0), 0.0, 1.0);
    bench.restart();
    EXPECT_NEAR(steadyGain(bench, -30.0), -9.9, 0.3);
}

TEST(EqualizerDynamics, TheSideChainMovesABandThatListensToIt) {
    EqualizerBench bench(ZELK_PLUGIN_FILE);
    useDynamicBell(bench, -12.0, -30.0);
    bench.set("Band 1 External Side Chain", "On");
    bench.restart();
    const Channels quiet(2, sine(1000.0, amplitude(-50.0), 2 * second));
    const Channels loud(2, sine(70.0, amplitude(-3.0), 2 * second)); // not filtered: any sound counts
    EXPECT_NEAR(endDb(bench.render(quiet, 256, &loud)[0]) + 50.0, -12.0, 0.3);
    const Channels silent(2, std::vector<float>(2 * second, 0.0f));
    EXPECT_NEAR(endDb(bench.render(quiet, 256, &silent)[0]) + 50.0, 0.0, 0.3);
}

TEST(EqualizerDynamics, AttackAndReleaseMoveTheGainWithoutAClick) {
    EqualizerBench bench(ZELK_PLUGIN_FILE);
    useDynamicBell(bench, -24.0, -40.0);
    // A bass note plays on while bursts of the band's tone come and go.
    std::vector<float> sound = sine(110.0, 0.3, 2 * second);
    const std::vector<float> burst = sine(1000.0, 0.3, 2 * second);
    for (std::size_t i = second / 2; i < second; ++i) { // faded in and out over 50 ms
        const double edge = static_cast<double>(std::min(i - second / 2, second - i)) / (0.05 * rate);
        sound[i] += burst[i] * static_cast<float>(std::min(edge, 1.0));
    }
    const Channels output = bench.render(Channels(2, sound));
    EXPECT_LT(roughness(output[0]), 1.2 * roughness(sound));
}

TEST(EqualizerDynamics, OtherModesHaveThemToo) {
    for (const char* mode : {"Natural Phase", "Linear Phase"}) {
        EqualizerBench bench(ZELK_PLUGIN_FILE);
        bench.set("Processing Mode", mode);
        bench.set("Processing Resolution", "High");
        useDynamicBell(bench, -12.0, -30.0);
        EXPECT_NEAR(steadyGain(bench, -60.0), 0.0, 0.1) << mode;
        EXPECT_NEAR(steadyGain(bench, -5.0), -12.0, 0.4) << mode;
        bench.set("Band 2 Stereo Placement", "Mid"); // a second chain
        bench.set("Band 2 Used", "Used");
        bench.restart();
        EXPECT_NEAR(steadyGain(bench, -5.0), -12.0, 0.4) << mode << ", two chains";
    }
    EqualizerBench bench(ZELK_PLUGIN_FILE);
    bench.set("Processing Mode", "Linear Phase");
    bench.set("Processing Resolution", "Very High");
    useDynamicBell(bench, -12.0, -30.0);
    EXPECT_NEAR(steadyGain(bench, -5.0), 0.0, 0.1) << "its kernels are too long to move";
    bench.set("Processing Resolution", "Medium");
    bench.restart();
    EXPECT_NEAR(steadyGain(bench, -5.0), -12.0, 0.4) << "and back";
}
