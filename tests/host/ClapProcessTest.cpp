#include "tests/support/ClapTestHost.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

namespace {

using Sound = std::vector<std::vector<float>>;

Sound noise(std::size_t channels, std::size_t frames) {
    std::mt19937 random(7);
    std::uniform_real_distribution<float> level(-1.0f, 1.0f);
    Sound sound(channels, std::vector<float>(frames));
    for (auto& channel : sound)
        for (float& sample : channel)
            sample = level(random);
    return sound;
}

class ClapProcessTest : public testing::Test {
protected:
    const ClapTestLibrary library{ZELK_PLUGIN_FILE};
    ClapTestHost host;
};

TEST_F(ClapProcessTest, WithNoBandInUseTheOutputIsTheInputBitForBit) {
    const Sound input = noise(4, 9001);
    for (const std::uint32_t block : {1u, 7u, 64u, 256u, 1000u, 4096u})
        for (const bool inPlace : {false, true}) {
            ClapTestInstance instance(library, host);
            instance.start(48000.0, block);
            instance.inPlace = inPlace;
            const Sound output = instance.run(input, block);
            EXPECT_EQ(output[0], input[0]) << "block " << block << (inPlace ? " in place" : "");
            EXPECT_EQ(output[1], input[1]) << "block " << block << (inPlace ? " in place" : "");
        }
}

TEST_F(ClapProcessTest, SilenceIsToldToTheHostOnlyAfterTheTail) {
    ClapTestInstance instance(library, host);
    instance.start(48000.0, 512);
    const auto* tail = instance.extension<clap_plugin_tail>(CLAP_EXT_TAIL);
    ASSERT_EQ(tail->get(instance.plugin), 8192u);
    instance.run(noise(4, 512), 512);
    EXPECT_EQ(instance.outputMask, 0u);
    for (auto& input : instance.inputs)
        std::fill(input.begin(), input.end(), 0.0f);
    instance.inputMasks = {3, 3};
    std::uint32_t frames = 0;
    do {
        instance.process(512);
        frames += 512;
    } while (instance.outputMask == 0 && frames < 100000);
    EXPECT_EQ(instance.outputMask, 0xFFFFFFFFu);
    EXPECT_GT(frames, 8192u);
    EXPECT_LE(frames, 8192u + 1024u);

    // Masks without silence, or silence of one channel only, do not count as silence.
    instance.inputs[1][0] = 1e-20f;
    instance.process(512);
    EXPECT_EQ(instance.outputMask, 0u);
    instance.inputs[1][0] = 0.0f;
    instance.inputMasks = {1, 3};
    instance.process(512);
    EXPECT_EQ(instance.outputMask, 0u);
}

TEST_F(ClapProcessTest, ChannelsThatTheHostLeavesOutReadSilenceInTheirOwnPlace) {
    ClapTestInstance instance(library, host);
    instance.start(44100.0, 64);
    std::vector<float> left(64, 0.25f);
    std::vector<float> side(64, 0.75f);
    std::vector<float> outLeft(64, -1.0f);
    std::vector<float> outRight(64, -1.0f);
    float* mainPointers[] = {left.data(), nullptr};
    float* sidePointers[] = {side.data(), side.data()};
    float* outputPointers[] = {outLeft.data(), outRight.data()};
    clap_audio_buffer inputs[] = {{mainPointers, nullptr, 2, 0, 0}, {sidePointers, nullptr, 2, 0, 0}};
    clap_audio_buffer output{outputPointers, nullptr, 2, 0, 0};
    clap_process block{};
    block.frames_count = 64;
    block.audio_inputs = inputs;
    block.audio_inputs_count = 2;
    block.audio_outputs = &output;
    block.audio_outputs_count = 1;
    const auto expect = [&](float leftLevel, float rightLevel) {
        ASSERT_EQ(instance.plugin->process(instance.plugin, &block), CLAP_PROCESS_CONTINUE);
        EXPECT_EQ(outLeft, std::vector<float>(64, leftLevel));
        EXPECT_EQ(outRight, std::vector<float>(64, rightLevel));
    };
    expect(0.25f, 0.0f); // a null channel
    inputs[0].channel_count = 1;
    expect(0.25f, 0.0f); // a short port: the side chain must not slide into the right channel
    inputs[0].data32 = nullptr;
    expect(0.0f, 0.0f);
    block.audio_inputs_count = 0;
    block.audio_inputs = nullptr;
    expect(0.0f, 0.0f);
    // Nowhere to write: nothing happens, and nothing is told.
    output = {nullptr, nullptr, 0, 0, 55};
    EXPECT_EQ(instance.plugin->process(instance.plugin, &block), CLAP_PROCESS_CONTINUE);
    EXPECT_EQ(output.constant_mask, 55u);
    block.audio_outputs = nullptr;
    block.audio_outputs_count = 0;
    EXPECT_EQ(instance.plugin->process(instance.plugin, &block), CLAP_PROCESS_CONTINUE);
}

TEST_F(ClapProcessTest, ABlockLongerThanPromisedIsStillProcessedWhole) {
    ClapTestInstance instance(library, host);
    instance.start(44100.0, 4096);
    instance.stop();
    ASSERT_TRUE(instance.plugin->activate(instance.plugin, 44100.0, 1, 64));
    ASSERT_TRUE(instance.plugin->start_processing(instance.plugin));
    const Sound input = noise(4, 3000);
    EXPECT_EQ(instance.run(input, 3000)[1], input[1]);
    instance.plugin->stop_processing(instance.plugin);
    instance.plugin->deactivate(instance.plugin);
}

TEST_F(ClapProcessTest, OddRatesAreTakenAndImpossibleOnesRefused) {
    ClapTestInstance instance(library, host);
    for (const double rate : {1000.0, 44099.5, 768000.0}) {
        instance.start(rate, 16384);
        const Sound input = noise(4, 16384);
        EXPECT_EQ(instance.run(input, 16384)[0], input[0]);
        instance.stop();
    }
    for (const double rate : {0.0, -48000.0, std::nan(""), HUGE_VAL})
        EXPECT_FALSE(instance.plugin->activate(instance.plugin, rate, 1, 64)) << rate;
}

} // namespace
