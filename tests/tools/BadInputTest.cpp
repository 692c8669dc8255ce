// What cannot be done gets one clear line, exit status 2, and leaves nothing behind.
#include "tests/tools/HostProgram.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

class BadInput : public testing::Test {
protected:
    BadInput() {
        host.writeSound("in.wav", noise(2, 20000), 48000);
        host.writeSound("other-rate.wav", noise(2, 100), 44100);
        host.writeText("text.wav", "no sound at all, only text that is longer than a header of a sound file");
        host.writeText("moves.txt", "0.1, Gain, 3 dB\n0.2, Gone, 1\n");
    }

    void expectRefusal(const HostProgram::Result& result, const std::string& clue) {
        EXPECT_EQ(result.status, 2) << clue;
        EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1) << result.errors;
        EXPECT_TRUE(result.errors.starts_with("zelk-host: ")) << result.errors;
        EXPECT_NE(result.errors.find(clue), std::string::npos) << "clue " << clue << ", said " << result.errors;
        EXPECT_EQ(host.files(), left) << clue;
    }

    const HostProgram host;
    const std::vector<std::string> left{"in.wav", "moves.txt", "other-rate.wav", "text.wav"};
};

TEST_F(BadInput, OneClearLineAndStatusTwo) {
    const std::string in = host.path("in.wav");
    const std::string out = host.path("out.wav");
    const std::string plugin = ZELK_TEST_PLUGIN;
    struct Case {
        std::vector<std::string> words;
        std::string clue;
    };
    const std::vector<Case> cases{
        {{}, "--help"},
        {{"rendre", plugin, in, out}, "render"},
        {{"render", plugin, in}, "OUT"},
        {{"render", host.path("gone.clap"), in, out}, "gone.clap"},
        {{"render", in, in, out}, "in.wav"},
        {{"render", plugin, host.path("gone.wav"), out}, "gone.wav"},
        {{"render", plugin, host.path("text.wav"), out}, "text.wav"},
        {{"render", plugin, in, host.path("gone/out.wav")}, "gone/out.wav"},
        {{"render", plugin, in, host.path("out.mp5")}, "out.mp5"},
        {{"render", plugin, in, in}, "written over"},
        {{"render", plugin, in, out, "--block", "0"}, "--block"},
        {{"render", plugin, in, out, "--block", "many"}, "--block"},
        {{"render", plugin, in, out, "--blok", "64"}, "--block"},
        {{"render", plugin, in, out, "--rate", "2e6"}, "sample rate"},
        {{"render", plugin, in, out, "--set", "Gian=1 dB"}, "Gain"},
        {{"render", plugin, in, out, "--set", "Gain=loud"}, "loud"},
        {{"render", plugin, in, out, "--set", "Gain=90 dB"}, "range"},
        {{"render", plugin, in, out, "--set", "Gain"}, "NAME=TEXT"},
        {{"render", plugin, in, out, "--automate", host.path("moves.txt")}, "line 2"},
        {{"render", plugin, in, out, "--config", "Octophonic"}, "Octophonic"},
        {{"render", plugin, in, out, "--sidechain", host.path("other-rate.wav")}, "44100"},
        {{"render", plugin, in, out, "--state", host.path("gone.state")}, "gone.state"},
        {{"render", plugin, in, out, "--state", host.path("text.wav")}, "text.wav"},
        {{"render", plugin, in, out, "--preset", host.path("text.wav")}, "no preset of mine"},
        {{"render", plugin, in, out, "--plugin", "com.example"}, "com.example"},
        {{"response", plugin, "--channel", "7"}, "7"},
    };
    for (const Case& wrong : cases)
        expectRefusal(host.run(wrong.words), wrong.clue);
}

TEST_F(BadInput, AFullDiskLeavesNoHalfFile) {
    const std::string plugin = ZELK_TEST_PLUGIN;
    expectRefusal(host.runWithFullDisk({"render", plugin, host.path("in.wav"), host.path("out.wav")}, 40), "out.wav");
    expectRefusal(host.runWithFullDisk({"render", plugin, host.path("in.wav"), host.path("out.flac")}, 1), "out.flac");
    expectRefusal(host.runWithFullDisk({"response", plugin, "--csv", host.path("r.csv")}, 8), "r.csv");
    expectRefusal(host.run({"render", plugin, host.path("in.wav"), "/dev/full"}), "/dev/full");
}

TEST_F(BadInput, AnOldFileStaysWhenTheNewOneFails) {
    host.writeSound("in.wav", noise(2, 20000), 48000);
    const std::string before = host.readText("other-rate.wav");
    const HostProgram::Result result =
        host.runWithFullDisk({"render", ZELK_TEST_PLUGIN, host.path("in.wav"), host.path("other-rate.wav")}, 40);
    expectRefusal(result, "other-rate.wav");
    EXPECT_EQ(host.readText("other-rate.wav"), before);
}

} // namespace
