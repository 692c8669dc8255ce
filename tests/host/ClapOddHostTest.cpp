// Hosts that do odd things to the built library: each has a clear result, and what they meant well is not lost.
#include "tests/support/ClapTestHost.h"
#include "tests/support/EqualizerBench.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace {

constexpr std::uint32_t frames = 64;

class ClapOddHostTest : public testing::Test {
protected:
    ClapOddHostTest() {
        const auto* params = instance.extension<clap_plugin_params>(CLAP_EXT_PARAMS);
        clap_param_info info{};
        for (std::uint32_t index = 0; index < params->count(instance.plugin); ++index)
            if (params->get_info(instance.plugin, index, &info) && std::string(info.name) == "Band 1 Gain")
                gain = info.id;
        for (std::vector<float>& channel : sound)
            channel.assign(frames, 0.25f);
    }

    double value(clap_id id) const {
        double found = -1000.0;
        instance.extension<clap_plugin_params>(CLAP_EXT_PARAMS)->get_value(instance.plugin, id, &found);
        return found;
    }

    // The block of a host that gives these buffers, whatever the ports say.
    std::int32_t process(std::vector<clap_audio_buffer> inputs, std::vector<clap_audio_buffer> outputs,
                         std::uint32_t length = frames) {
        clap_process block{};
        block.frames_count = length;
        block.audio_inputs = inputs.empty() ? nullptr : inputs.data();
        block.audio_inputs_count = static_cast<std::uint32_t>(inputs.size());
        block.audio_outputs = outputs.empty() ? nullptr : outputs.data();
        block.audio_outputs_count = static_cast<std::uint32_t>(outputs.size());
        block.in_events = instance.events.list();
        return instance.plugin->process(instance.plugin, &block);
    }

    ClapTestLibrary library{ZELK_PLUGIN_FILE};
    ClapTestHost host{ClapTestHost::Offers::emptyTables};
    ClapTestInstance instance{library, host};
    clap_id gain = CLAP_INVALID_ID;
    std::array<std::vector<float>, 4> sound;
};

TEST_F(ClapOddHostTest, MissingPortsAreSilenceAndFurtherChannelsAreSilent) {
    instance.start(48000.0, frames);
    std::array<float*, 4> channels{sound[0].data(), sound[1].data(), sound[2].data(), sound[3].data()};
    const clap_audio_buffer four{channels.data(), nullptr, 4, 0, 0};
    const clap_audio_buffer empty{nullptr, nullptr, 2, 0, 0};
    EXPECT_EQ(process({}, {}), CLAP_PROCESS_CONTINUE);
    EXPECT_EQ(process({empty, empty}, {empty}), CLAP_PROCESS_CONTINUE);
    EXPECT_EQ(process({four, four}, {}), CLAP_PROCESS_CONTINUE);
    EXPECT_EQ(sound[0][0], 0.25f) << "nothing is written without an output port";
    // In place on buffers that are wider than the port: two channels pass, the others hold nothing by chance.
    EXPECT_EQ(process({four, four}, {four}), CLAP_PROCESS_CONTINUE);
    for (const std::size_t channel : {0u, 1u, 2u, 3u})
        EXPECT_EQ(sound[channel], std::vector<float>(frames, channel < 2 ? 0.25f : 0.0f)) << channel;
}

TEST_F(ClapOddHostTest, ABlockWithoutFramesTakesItsEventsAndWritesNothing) {
    instance.start(48000.0, frames);
    std::array<float*, 2> channels{sound[0].data(), sound[1].data()};
    const clap_audio_buffer two{channels.data(), nullptr, 2, 0, 0};
    instance.events.addValue(0, gain, 7.0);
    EXPECT_EQ(process({two, two}, {two}, 0), CLAP_PROCESS_CONTINUE);
    EXPECT_EQ(value(gain), 7.0);
    EXPECT_EQ(sound[0], std::vector<float>(frames, 0.25f));
}

TEST_F(ClapOddHostTest, EventsThatMakeNoSenseLeaveTheOthersInForce) {
    instance.start(48000.0, frames);
    instance.events.addValue(0, 358, 1.0);
    instance.events.addValue(0, CLAP_INVALID_ID, 1.0);
    instance.events.addValue(0, gain, 3.0);
    instance.events.addValue(5, gain, std::numeric_limits<double>::quiet_NaN());
    instance.events.addValue(5, gain, std::numeric_limits<double>::infinity());
    instance.events.addValue(40, gain, 4.0);
    instance.events.addValue(20, gain, 5.0); // too late for its place, so dropped
    instance.events.addMidi(10, 0xB0, 7, 64);
    instance.events.addValue(50, gain, 6.0);
    instance.process(frames);
    EXPECT_EQ(value(gain), 6.0);
    instance.events.clear();
    instance.events.addValue(10, gain, 1e30);    // as much as there is
    instance.events.addValue(frames, gain, 2.0); // of the next block, which must bring it itself
    instance.process(frames);
    EXPECT_EQ(value(gain), 30.0);
}

TEST_F(ClapOddHostTest, FlushesWithAndWithoutAudioAreInForceInTheNextBlock) {
    const auto* params = instance.extension<clap_plugin_params>(CLAP_EXT_PARAMS);
    instance.events.addValue(0, gain, 3.0);
    params->flush(instance.plugin, instance.events.list(), nullptr);
    EXPECT_EQ(value(gain), 3.0);
    instance.start(48000.0, frames);
    instance.process(frames);
    instance.events.clear();
    instance.events.addValue(0, gain, -3.0);
    params->flush(instance.plugin, instance.events.list(), instance.taken.list());
    params->flush(instance.plugin, nullptr, nullptr);
    instance.stop();
    instance.events.clear();
    instance.events.addValue(0, gain, -4.0);
    params->flush(instance.plugin, instance.events.list(), instance.taken.list());
    EXPECT_EQ(value(gain), -4.0);
}

TEST_F(ClapOddHostTest, APromiseOfEndlessBlocksCostsNoEndlessMemory) {
    ASSERT_TRUE(instance.plugin->activate(instance.plugin, 48000.0, 1, std::numeric_limits<std::uint32_t>::max()));
    ASSERT_TRUE(instance.plugin->start_processing(instance.plugin));
    constexpr std::uint32_t length = 200000;
    std::array<std::vector<float>, 2> longSound{std::vector<float>(length, 0.5f), std::vector<float>(length, -0.5f)};
    std::array<float*, 2> channels{longSound[0].data(), longSound[1].data()};
    const clap_audio_buffer two{channels.data(), nullptr, 2, 0, 0};
    EXPECT_EQ(process({two}, {two}, length), CLAP_PROCESS_CONTINUE);
    EXPECT_EQ(longSound[1], std::vector<float>(length, -0.5f));
    instance.plugin->stop_processing(instance.plugin);
    instance.plugin->deactivate(instance.plugin);
}

TEST(ClapOddHost, AResetInTheMiddleOfAFadeEndsIt) {
    for (const char* const wanted : {"Bypassed", "Not Bypassed"}) {
        const bool toDry = std::string(wanted) == "Bypassed";
        EqualizerBench bench(ZELK_PLUGIN_FILE);
        bench.set("Output Level", 0.75);
        bench.set("Bypass", toDry ? "Not Bypassed" : "Bypassed");
        bench.settle();
        const Channels steady(2, std::vector<float>(480, 0.5f));
        bench.set("Bypass", wanted);
        bench.render(steady);
        bench.plugIn().plugin->reset(bench.plugIn().plugin);
        const Channels heard = bench.render(steady);
        EXPECT_EQ(*std::min_element(heard[0].begin(), heard[0].end()),
                  *std::max_element(heard[0].begin(), heard[0].end()))
            << "still fading to " << wanted;
        EXPECT_EQ(heard[0][0] == 0.5f, toDry);
    }
}

} // namespace
