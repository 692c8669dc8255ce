#include "tests/tools/HostProgram.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <string>

namespace {

// The test plug-in: 100 samples of latency, 50 of tail.
constexpr std::size_t latency = 100;
constexpr std::size_t tail = 50;
constexpr std::size_t frames = 5000;

class RenderTest : public testing::Test {
protected:
    // Renders in.wav to out.wav; fails the test when that fails.
    Sound render(const std::vector<std::string>& options, const std::string& plugin = ZELK_TEST_PLUGIN) {
        std::vector<std::string> words{"render", plugin, host.path("in.wav"), host.path("out.wav"), "--strict"};
        words.insert(words.end(), options.begin(), options.end());
        last = host.run(words);
        EXPECT_EQ(last.status, 0) << last.errors;
        return host.readSound("out.wav");
    }

    HostProgram host;
    HostProgram::Result last;
    const Sound input = noise(2, frames);
};

std::vector<float> scaled(std::vector<float> samples, float gain) {
    for (float& sample : samples)
        sample *= gain;
    return samples;
}

void expectNear(const std::vector<float>& a, const std::vector<float>& b) {
    ASSERT_EQ(a.size(), b.size());
    for (std::size_t i = 0; i < a.size(); ++i)
        ASSERT_NEAR(a[i], b[i], 1e-6) << "sample " << i;
}

TEST_F(RenderTest, TheOutputLiesLaterByTheLatencyUnlessThatIsCompensated) {
    host.writeSound("in.wav", input, 44100);
    const Sound plain = render({});
    ASSERT_EQ(plain.size(), 2u);
    ASSERT_EQ(plain[0].size(), frames);
    EXPECT_TRUE(std::equal(plain[0].begin() + latency, plain[0].end(), input[0].begin()));
    EXPECT_NE(last.output.find("times real time"), std::string::npos) << last.output;
    EXPECT_NE(last.output.find("worst block: "), std::string::npos) << last.output;
    EXPECT_NE(last.output.find("latency: 100 samples, 2.27 ms"), std::string::npos) << last.output;

    const Sound compensated = render({"--compensate", "--set", "Echo=On"});
    ASSERT_EQ(compensated[1].size(), frames + tail);
    for (std::size_t i = 0; i < compensated[1].size(); ++i) {
        const float direct = i < frames ? input[1][i] : 0.0f;
        const float echo = i >= tail ? 0.5f * input[1][i - tail] : 0.0f;
        ASSERT_FLOAT_EQ(compensated[1][i], direct + echo) << "sample " << i;
    }
}

TEST_F(RenderTest, TheBlockLengthIsNotHeardNorIsWorkInPlace) {
    host.writeSound("in.wav", input, 48000);
    host.writeText("moves.txt", "# seconds, parameter, value\n0.02, Gain, -6 dB\n0.05,Polarity, Inverted\n");
    const Sound expected = render({"--automate", host.path("moves.txt")});
    for (const char* block : {"1", "7", "960", "1000", "100000"}) {
        EXPECT_EQ(render({"--automate", host.path("moves.txt"), "--block", block}), expected) << block;
        EXPECT_EQ(render({"--automate", host.path("moves.txt"), "--block", block, "--in-place"}), expected) << block;
    }
    const std::size_t moved = 960; // 0.02 s
    EXPECT_EQ(expected[0][moved - 1], input[0][moved - 1 - latency]);
    EXPECT_FLOAT_EQ(expected[0][moved], 0.501187234f * input[0][moved - latency]); // 10^(-6/20)
    EXPECT_FLOAT_EQ(expected[0][2400], -0.501187234f * input[0][2400 - latency]);
}

TEST_F(RenderTest, ASideChainReachesItsPortAndSilenceFollowsIt) {
    host.writeSound("in.wav", input, 48000);
    const Sound side = noise(1, 700);
    host.writeSound("side.wav", side, 48000);
    const Sound output = render({"--sidechain", host.path("side.wav"), "--set", "Source=Side Chain"});
    for (const std::vector<float>& channel : output) {
        EXPECT_TRUE(std::equal(side[0].begin(), side[0].end(), channel.begin() + latency));
        EXPECT_EQ(std::count(channel.begin() + latency + 700, channel.end(), 0.0f),
                  std::ssize(channel) - static_cast<std::ptrdiff_t>(latency + 700));
    }
}

TEST_F(RenderTest, StatesAndPresetsCarryTheSettings) {
    host.writeSound("in.wav", input, 48000);
    const Sound expected =
        render({"--set", "Gain=3.5 dB", "--set", "Polarity=Inverted", "--save-state", host.path("state")});
    expectNear({expected[0].begin() + latency, expected[0].end()},
               scaled({input[0].begin(), input[0].end() - latency}, -1.49623566f)); // 10^(3.5/20)
    EXPECT_EQ(render({"--state", host.path("state")}), expected);
    host.writeText("preset", "3.5 1 0 0 0");
    EXPECT_EQ(render({"--preset", host.path("preset")}), expected);
}

TEST_F(RenderTest, TheLayoutFollowsTheInputUnlessOneIsAskedFor) {
    for (const std::size_t channels : {1u, 2u, 6u}) {
        const Sound sound = noise(channels, 1000);
        host.writeSound("in.wav", sound, 48000);
        const Sound output = render({"--compensate"}, ZELK_PLUGIN_FILE);
        ASSERT_EQ(output.size(), channels);
        for (std::size_t channel = 0; channel < channels; ++channel)
            EXPECT_TRUE(std::equal(sound[channel].begin(), sound[channel].end(), output[channel].begin()))
                << channels << " channels, channel " << channel;
    }
    const HostProgram::Result refused =
        host.run({"render", ZELK_PLUGIN_FILE, host.path("in.wav"), host.path("other.wav"), "--config", "Stereo"});
    EXPECT_EQ(refused.status, 2);
    EXPECT_NE(refused.errors.find("the input has 6 channels; the plug-in takes 2"), std::string::npos)
        << refused.errors;
}

TEST_F(RenderTest, APluginThatBreaksARuleIsToldApartFromOneThatFails) {
    host.writeSound("in.wav", input, 48000);
    const auto run = [&](const char* trouble, const char* strict) {
        return host.run({"render", ZELK_TEST_PLUGIN, host.path("in.wav"), host.path("out.wav"), "--set",
                         std::string("Trouble \"quoted\"=") + trouble, strict});
    };
    for (const char* broken : {"Wrong Thread", "Overrun"}) {
        EXPECT_EQ(run(broken, "--strict").status, 1) << broken;
        EXPECT_EQ(run(broken, "--in-place").status, 0) << broken;
    }
    EXPECT_EQ(run("Restart", "--strict").status, 0);
    const HostProgram::Result failed = run("Failure", "--strict");
    EXPECT_EQ(failed.status, 2);
    EXPECT_EQ(std::count(failed.errors.begin(), failed.errors.end(), '\n'), 1) << failed.errors;
}

} // namespace
