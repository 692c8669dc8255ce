// The loaded equalizer while its settings change: no click, and every change on its sample.
#include "tests/support/EqualizerBench.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <string>
#include <vector>

namespace {

// Chords with a wide spectrum, loud and without an edge of its own.
Channels music(std::size_t length) {
    Channels channels(2, std::vector<float>(length, 0.0f));
    const double tones[] = {55.0, 110.3, 220.1, 331.7, 554.0, 987.0, 1661.0, 2793.0, 4435.0};
    for (std::size_t side = 0; side < 2; ++side) {
        for (std::size_t tone = 0; tone < std::size(tones); ++tone) {
            const std::vector<float> one =
                sine(tones[tone] * (side == 0 ? 1.0 : 1.003), 0.4 / (1.0 + static_cast<double>(tone)), length);
            std::transform(one.begin(), one.end(), channels[side].begin(), channels[side].begin(), std::plus<>());
        }
    }
    return channels;
}

struct Change {
    const char* name;
    const char* from;
    const char* to;
};

void useBand(EqualizerBench& bench, const char* gain) {
    bench.set("Band 1 Frequency", "400 Hz");
    bench.set("Band 1 Gain", gain);
    bench.set("Band 1 Used", "Used");
    bench.set("Band 2 Frequency", "3 kHz");
    bench.set("Band 2 Gain", "-8 dB");
    bench.set("Band 2 Used", "Used");
}

} // namespace

// A step in the sound would stand far above the second difference of the sound itself, before and after.
TEST(EqualizerChange, NothingClicksWhenBandsComeAndGo) {
    // Times the roughness of the settled sound, before or after. A glide is followed by a new row every 32 samples,
    // each a small step: 24 dB in 20 ms is the steepest.
    constexpr double allowed = 1.5;
    constexpr double allowedGlide = 2.5;
    constexpr std::size_t length = 48000;
    const Channels input = music(length);
    for (const Change& change :
         {Change{"Band 1 Used", "Used", "Unused"}, Change{"Band 1 Used", "Unused", "Used"},
          Change{"Band 1 Enabled", "Enabled", "Disabled"}, Change{"Band 1 Enabled", "Disabled", "Enabled"},
          Change{"Band 1 Shape", "Bell", "High Cut"}, Change{"Band 1 Shape", "Notch", "Low Shelf"},
          Change{"Band 1 Slope", "12 dB/oct", "96 dB/oct"}, Change{"Band 2 Slope", "96 dB/oct", "6 dB/oct"},
          Change{"Bypass", "Not Bypassed", "Bypassed"}, Change{"Bypass", "Bypassed", "Not Bypassed"},
          Change{"Band 1 Solo", "Disabled", "Enabled"}, Change{"Band 1 Solo", "Enabled", "Disabled"},
          Change{"Band 1 Gain", "12 dB", "-12 dB"}, Change{"Band 1 Frequency", "400 Hz", "5 kHz"},
          Change{"Band 1 Q", "1", "8"}, Change{"Gain Scale", "100%", "0%"}, Change{"Output Level", "0 dB", "-20 dB"},
          Change{"Auto Gain", "Off", "On"}, Change{"Output Invert Phase", "Normal", "Normal"}}) {
        EqualizerBench bench(ZELK_PLUGIN_FILE);
        useBand(bench, "12 dB");
        bench.set(change.name, change.from);
        bench.restart();
        bench.set(change.name, change.to, length / 2 + 77);
        const Channels output = bench.render(input);
        for (std::size_t channel = 0; channel < 2; ++channel) {
            const double before = roughness(output[channel], length / 4, length / 2);
            const double after = roughness(output[channel], length * 7 / 8);
            const double around = roughness(output[channel], length / 2, length * 7 / 8);
            const bool glides =
                std::string(change.name).ends_with("Gain") || std::string(change.name).ends_with("Scale");
            EXPECT_LT(around, (glides ? allowedGlide : allowed) * std::max(before, after))
                << change.name << " to " << change.to << ", channel " << channel << ": " << before << ", " << around
                << ", " << after;
        }
    }
}

TEST(EqualizerChange, ChangesLandOnTheirSampleWhateverTheBlock) {
    struct Case {
        const char* what;
        double limitDb;
        std::vector<Change> changes;
    };
    // Rows follow a glide of frequency, Q or gain in steps whose places depend on where blocks begin.
    const Case cases[] = {
        {"levels, pan and switches",
         -90.0,
         {{"Output Level", "", "-7 dB"},
          {"Output Pan", "", "0.3"},
          {"Bypass", "", "Bypassed"},
          {"Output Level", "", "3 dB"},
          {"Bypass", "", "Not Bypassed"},
          {"Band 2 Enabled", "", "Disabled"},
          {"Output Pan Mode", "", "Mid/Side"},
          {"Band 1 Slope", "", "36 dB/oct"},
          {"Band 2 Enabled", "", "Enabled"},
          {"Band 2 Stereo Placement", "", "Side"}}},
        {"glides",
         -50.0,
         {{"Band 1 Frequency", "", "900 Hz"},
          {"Band 1 Gain", "", "-12 dB"},
          {"Band 2 Q", "", "6"},
          {"Band 2 Frequency", "", "150 Hz"},
          {"Gain Scale", "", "30%"}}},
    };
    constexpr std::size_t length = 48000;
    const Channels input = music(length);
    for (const Case& one : cases) {
        const auto render = [&](std::uint32_t block) {
            EqualizerBench bench(ZELK_PLUGIN_FILE);
            useBand(bench, "9 dB");
            bench.restart();
            std::mt19937 random(5);
            for (std::size_t i = 0; i < one.changes.size(); ++i)
                bench.set(one.changes[i].name, one.changes[i].to, 3000 * (i + 1) + random() % 2000);
            return bench.render(input, block);
        };
        const Channels reference = render(256);
        for (const std::uint32_t block : {32u, 1000u}) {
            const Channels other = render(block);
            EXPECT_LT(peakDifferenceDb(reference[0], other[0]), one.limitDb) << one.what << ", blocks of " << block;
            EXPECT_LT(peakDifferenceDb(reference[1], other[1]), one.limitDb) << one.what << ", blocks of " << block;
        }
    }
}

TEST(EqualizerChange, AnyStormOfChangesLeavesTheSoundFiniteAndTheEndSilent) {
    for (const clap_id layout : {1u, 0u, 12u}) {
        EqualizerBench bench(ZELK_PLUGIN_FILE, layout);
        std::mt19937 random(23);
        const auto* params = bench.plugIn().extension<clap_plugin_params>(CLAP_EXT_PARAMS);
        constexpr std::size_t length = 96000;
        for (int i = 0; i < 1500; ++i) {
            clap_param_info info{};
            ASSERT_TRUE(params->get_info(bench.plugIn().plugin, static_cast<std::uint32_t>(random() % 312), &info));
            const double share = std::uniform_real_distribution<double>(0.0, 1.0)(random);
            bench.set(info.name, info.min_value + share * (info.max_value - info.min_value), random() % length);
        }
        Channels input(bench.channels());
        for (std::size_t channel = 0; channel < input.size(); ++channel)
            input[channel] = noise(static_cast<std::uint32_t>(channel), 0.5, length);
        for (const std::vector<float>& channel : bench.render(input, 333)) {
            EXPECT_TRUE(
                std::all_of(channel.begin(), channel.end(), [](float sample) { return std::isfinite(sample); }));
        }
        bench.settle(2.0);
        const Channels end = bench.render(Channels(bench.channels(), std::vector<float>(256, 0.0f)));
        for (const std::vector<float>& channel : end)
            EXPECT_EQ(*std::max_element(channel.begin(), channel.end()), 0.0f) << "layout " << layout;
    }
}

// The path of a solo that was let go fades out by its weight alone, whatever becomes of the delays before it.
TEST(EqualizerChange, ASoloThatFadesOutOutlivesTheDelaysThatItHears) {
    const Channels input = music(4800);
    for (const char* const placement : {"Stereo", "Mid"}) {
        EqualizerBench bench(ZELK_PLUGIN_FILE);
        EqualizerBench plain(ZELK_PLUGIN_FILE);
        for (EqualizerBench* const one : {&bench, &plain}) {
            useBand(*one, "12 dB");
            one->set("Band 1 Stereo Placement", placement);
        }
        bench.set("Processing Mode", "Natural Phase");
        bench.set("Band 1 Solo", "Enabled");
        bench.settle();
        bench.set("Band 1 Solo", "Disabled");
        bench.set("Processing Mode", "Zero Latency", 100);
        bench.render(input);
        bench.settle();
        plain.settle();
        const Channels expected = plain.render(input);
        const Channels heard = bench.render(input);
        for (std::size_t channel = 0; channel < 2; ++channel)
            EXPECT_LT(peakDifferenceDb(heard[channel], expected[channel]), -90.0) << placement;
    }
}
