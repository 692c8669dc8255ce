// What is no sound at the inputs of the loaded equalizer, and gains that overflow inside it: neither stays.
#include "tests/support/EqualizerBench.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

namespace {

constexpr std::size_t poisonBegin = 4800;
constexpr std::size_t poisonEnd = 7200;

bool allFinite(const std::vector<float>& samples, std::size_t begin = 0) {
    return std::all_of(samples.begin() + static_cast<std::ptrdiff_t>(begin), samples.end(),
                       [](float sample) { return std::isfinite(sample); });
}

// Bands of every kind that remembers: cuts, bells on sides, detectors on both inputs, with and without auto threshold.
void useBands(EqualizerBench& bench, const char* mode) {
    bench.set("Processing Mode", mode);
    for (int number = 1; number <= 12; ++number) {
        const std::string band = "Band " + std::to_string(number) + " ";
        bench.set(band + "Used", "Used");
        bench.set(band + "Frequency", 5.0 + 0.7 * number);
        bench.set(band + "Gain", number % 2 == 0 ? 4.0 : -6.0);
        bench.set(band + "Stereo Placement", number % 3 == 0 ? "Mid" : number % 5 == 0 ? "Left" : "Stereo");
        if (number == 1)
            bench.set(band + "Shape", "Low Cut");
        bench.set(band + "Dynamic Range", number % 2 == 0 ? 6.0 : -9.0);
        bench.set(band + "Dynamics Enabled", number % 4 == 3 ? 0.0 : 1.0);
        if (number > 6)
            bench.set(band + "Threshold", 0.5);
        bench.set(band + "External Side Chain", number > 9 ? 1.0 : 0.0);
    }
    bench.settle(0.5);
}

Channels poisoned(Channels channels, const std::vector<float>& values) {
    for (std::vector<float>& channel : channels)
        for (std::size_t i = poisonBegin; i < poisonEnd; ++i)
            channel[i] = values[i % values.size()];
    return channels;
}

} // namespace

TEST(BrokenInput, WhatIsNoSoundIsHeardAsSilenceAndLeavesNoTrace) {
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    constexpr float infinity = std::numeric_limits<float>::infinity();
    constexpr float greatest = std::numeric_limits<float>::max();
    constexpr float denormal = 1e-42f;
    for (const char* const mode : {"Zero Latency", "Natural Phase", "Linear Phase"}) {
        for (const char* const bypass : {"Not Bypassed", "Bypassed"}) {
            EqualizerBench clean(ZELK_PLUGIN_FILE);
            EqualizerBench broken(ZELK_PLUGIN_FILE);
            useBands(clean, mode);
            useBands(broken, mode);
            clean.set("Bypass", bypass);
            broken.set("Bypass", bypass);
            clean.settle();
            broken.settle();
            const bool dry = std::string(bypass) == "Bypassed" && broken.latency() == 0;
            for (const std::vector<float>& values :
                 {std::vector<float>{nan}, std::vector<float>{infinity, -infinity}, std::vector<float>{greatest, 0.1f},
                  std::vector<float>{denormal, -denormal}, std::vector<float>{0.3f, nan, -greatest, -infinity}}) {
                const Channels main{noise(1, 0.5, 14400), noise(2, 0.3, 14400)};
                const Channels side{noise(3, 0.5, 14400), noise(4, 0.3, 14400)};
                std::vector<float> asHeard = values;
                for (float& value : asHeard)
                    value = std::fabs(value) < 1e18f ? value : 0.0f;
                const Channels cleanSide = poisoned(side, asHeard);
                const Channels brokenSide = poisoned(side, values);
                const Channels expected = clean.render(poisoned(main, asHeard), 256, &cleanSide);
                const Channels heard = broken.render(poisoned(main, values), 256, &brokenSide);
                for (std::size_t channel = 0; channel < 2; ++channel) {
                    ASSERT_TRUE(allFinite(heard[channel], dry ? poisonEnd : 0)) << mode << ", " << bypass;
                    if (dry) // hands on what comes
                        continue;
                    ASSERT_LT(peakDifferenceDb(heard[channel], expected[channel]), -140.0)
                        << mode << ", " << bypass << ", " << values[0];
                }
            }
        }
    }
}

// 24 bells of 30 dB at one place: 720 dB is more than a float holds.
TEST(BrokenInput, GainsThatOverflowAreSilenceAndTheSoundIsRightOnceTheyAreGone) {
    for (const char* const mode : {"Zero Latency", "Natural Phase", "Linear Phase"}) {
        EqualizerBench bench(ZELK_PLUGIN_FILE);
        EqualizerBench plain(ZELK_PLUGIN_FILE);
        for (EqualizerBench* const one : {&bench, &plain}) {
            one->set("Processing Mode", mode);
            for (int band = 1; band <= 24; ++band)
                one->set("Band " + std::to_string(band) + " Used", "Used");
            one->settle();
        }
        const Channels tone{sine(1000.0, 0.9, 24000), sine(1000.0, 0.9, 24000)};
        for (int band = 1; band <= 24; ++band)
            bench.set("Band " + std::to_string(band) + " Gain", 30.0);
        const Channels loud = bench.render(tone);
        EXPECT_TRUE(allFinite(loud[0]) && allFinite(loud[1])) << mode;
        const float largest = *std::max_element(loud[0].begin(), loud[0].end());
        if (std::string(mode) == "Linear Phase")
            EXPECT_EQ(largest, 0.0f) << "a kernel of such gains is none";
        else
            EXPECT_GT(largest, 1e9f) << mode << ": the gains do not add up";

        for (int band = 1; band <= 24; ++band)
            bench.set("Band " + std::to_string(band) + " Gain", 0.0);
        bench.render(tone);
        plain.render(tone);
        bench.settle(0.5);
        plain.settle(0.5);
        const Channels expected = plain.render(tone);
        const Channels heard = bench.render(tone);
        EXPECT_TRUE(allFinite(heard[0])) << mode;
        EXPECT_LT(peakDifferenceDb(heard[0], expected[0]), -80.0) << mode;
        EXPECT_LT(peakDifferenceDb(heard[1], expected[1]), -80.0) << mode;
    }
}
