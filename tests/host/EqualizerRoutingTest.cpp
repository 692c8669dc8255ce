// Which channels of the loaded equalizer a band reaches, and that it leaves the others alone.
#include "tests/support/EqualizerBench.h"

#include "framework/chl/Layouts.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <string>

namespace {

constexpr std::size_t length = 2048;

Channels noises(std::size_t count) {
    Channels channels;
    for (std::size_t i = 0; i < count; ++i)
        channels.push_back(noise(static_cast<std::uint32_t>(i) + 1, 0.5, length));
    return channels;
}

bool hasPartner(chl::Layout layout, std::size_t channel, chl::SpeakerCode own) {
    const chl::SpeakerCode other = own ^ (chl::leftBit | chl::rightBit);
    const std::size_t place = (own & chl::leftBit) != 0 ? channel + 1 : channel - 1;
    return chl::speakerCode(layout, place) == other;
}

// Left and right count by the side of the speaker, mid and side by the pair that it belongs to.
bool reaches(const std::string& placement, chl::Layout layout, std::size_t channel) {
    const chl::SpeakerCode code = chl::speakerCode(layout, channel);
    if (!chl::speakerInSet(code, chl::SpeakerSet::allButLfe))
        return false;
    if (placement == "Stereo")
        return true;
    if ((code & chl::middleBit) != 0)
        return false;
    if (placement == "Left")
        return (code & chl::leftBit) != 0;
    if (placement == "Right")
        return (code & chl::rightBit) != 0;
    return hasPartner(layout, channel, code);
}

void useBell(EqualizerBench& bench, const std::string& band, const std::string& placement, double gainDb) {
    bench.set(band + " Gain", gainDb);
    bench.set(band + " Stereo Placement", placement);
    bench.set(band + " Used", "Used");
}

} // namespace

TEST(EqualizerRouting, EveryPlacementReachesItsChannelsInEveryLayoutAndNoOther) {
    for (std::int32_t index = 0; index < chl::layoutCount; ++index) {
        const auto layout = static_cast<chl::Layout>(index);
        const Channels input = noises(chl::channelCount(layout));
        EqualizerBench bench(ZELK_PLUGIN_FILE, static_cast<clap_id>(index));
        for (const std::string placement : {"Left", "Right", "Stereo", "Mid", "Side"}) {
            useBell(bench, "Band 1", placement, 6.0);
            bench.restart();
            const Channels output = bench.render(input);
            for (std::size_t channel = 0; channel < input.size(); ++channel)
                EXPECT_EQ(output[channel] != input[channel], reaches(placement, layout, channel))
                    << chl::layoutName(layout) << ", " << placement << ", channel " << channel;
        }
    }
}

TEST(EqualizerRouting, ABandOnSomeSpeakersLeavesAllOthersUntouched) {
    constexpr auto layout = chl::Layout::atmos714;
    const Channels input = noises(chl::channelCount(layout));
    struct Case {
        const char* text;
        chl::SpeakerSet set;
        const char* placement;
    };
    for (const Case& one :
         {Case{"LFE", chl::SpeakerSet::lfe, "Stereo"}, Case{"Center", chl::SpeakerSet::center, "Stereo"},
          Case{"L/R (Front)", chl::SpeakerSet::leftRight, "Mid"},
          Case{"Lts/Rts (Top Surround)", chl::SpeakerSet::topSide, "Left"}}) {
        EqualizerBench bench(ZELK_PLUGIN_FILE, static_cast<clap_id>(layout));
        bench.set("Band 1 Speakers", one.text);
        useBell(bench, "Band 1", one.placement, -9.0);
        bench.restart();
        const Channels output = bench.render(input);
        for (std::size_t channel = 0; channel < input.size(); ++channel) {
            const chl::SpeakerCode code = chl::speakerCode(layout, channel);
            const bool wanted = chl::speakerInSet(code, one.set) &&
                                (one.placement != std::string("Left") || (code & chl::leftBit) != 0);
            EXPECT_EQ(output[channel] != input[channel], wanted) << one.text << ", channel " << channel;
        }
    }
}

TEST(EqualizerRouting, MidAndSideDoNotLeakIntoEachOther) {
    const std::vector<float> one = noise(3, 0.5, length);
    std::vector<float> opposite = one;
    for (float& sample : opposite)
        sample = -sample;
    for (const bool midBand : {true, false}) {
        EqualizerBench bench(ZELK_PLUGIN_FILE);
        useBell(bench, "Band 1", midBand ? "Mid" : "Side", 12.0);
        bench.restart();
        const Channels input{one, midBand ? opposite : one}; // what the band must not hear
        const Channels output = bench.render(input);
        EXPECT_LT(peakDifferenceDb(output[0], input[0]), -120.0);
        EXPECT_LT(peakDifferenceDb(output[1], input[1]), -120.0);
    }
}

TEST(EqualizerRouting, StereoBandsSoundTheSameInEitherChain) {
    const Channels input{noise(4, 0.3, length), noise(5, 0.3, length)};
    const auto render = [&input](bool leftBand, bool midBand) {
        EqualizerBench bench(ZELK_PLUGIN_FILE);
        useBell(bench, "Band 1", "Stereo", 9.0);
        bench.set("Band 1 Slope", "48 dB/oct");
        // Bells at 0 dB: they change the wiring and nothing else.
        if (leftBand)
            useBell(bench, "Band 2", "Left", 0.0);
        if (midBand)
            useBell(bench, "Band 3", "Mid", 0.0);
        bench.restart();
        return bench.render(input);
    };
    const Channels alone = render(false, false);
    for (const Channels& other : {render(false, true), render(true, true), render(true, false)}) {
        EXPECT_LT(peakDifferenceDb(alone[0], other[0]), -120.0);
        EXPECT_LT(peakDifferenceDb(alone[1], other[1]), -120.0);
    }
}

TEST(EqualizerRouting, WithoutABandInUseTheInputComesOutBitByBit) {
    for (const clap_id layout : {0u, 1u, 6u, 28u}) {
        EqualizerBench bench(ZELK_PLUGIN_FILE, layout);
        bench.set("Band 5 Gain", 12.0); // not in use
        bench.set("Band 6 Used", "Used");
        bench.set("Band 6 Enabled", "Disabled");
        bench.set("Auto Gain", "On");
        bench.restart();
        const Channels input = noises(bench.channels());
        EXPECT_EQ(bench.render(input), input);
    }
}
