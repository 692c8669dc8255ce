#include "tests/tools/HostProgram.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

using namespace std::string_literals;

namespace {

std::string bigEndian(std::uint32_t value, int bytes) {
    std::string text;
    for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8)
        text += static_cast<char>(value >> shift);
    return text;
}

std::string chunk(const std::string& type, const std::string& content) {
    return type + bigEndian(static_cast<std::uint32_t>(content.size()), 4) + content;
}

std::string song(std::uint32_t format, std::uint32_t tracks, std::uint32_t division, const std::string& chunks) {
    return chunk("MThd", bigEndian(format, 2) + bigEndian(tracks, 2) + bigEndian(division, 2)) + chunks;
}

// Controller 7 of the test plug-in is its gain: the value less 100, in dB. 96 ticks are half a second at first.
const std::string slower = "\xFF\x51\3\x0F\x42\x40"s; // a second a quarter note
const std::string end = "\0\xFF\x2F\0"s;
const std::string oneTrack = song(0, 1, 96,
                                  chunk("MTrk", "\0\xFF\3\4name\0\xC0\5\0\xD0\x44\0\xB0\7\x5E"s // -6 dB
                                                "\x60\7\x64\0\xF0\3\1\2\xF7\0"s +
                                                    slower +                                           // 0 dB
                                                    "\x18\xB3\7\x58\0\x93\x3C\x40\x30\x3C\0"s + end)); // -12 dB
const std::string twoTracks =
    song(1, 2, 96,
         chunk("MTrk", "\x60"s + slower + end) + chunk("XFIH", "unknown") +
             chunk("MTrk", "\0\xB0\7\x5E\x60\7\x64\x18\7\x58"s + end + "what follows counts for nothing"));
const std::string milliseconds = // 25 frames a second of 40 ticks, which no tempo stretches
    song(0, 1, 0xE728, chunk("MTrk", "\0\xB0\7\x5E\0"s + slower + "\x83\x74\xB0\7\x64\x81\x7A\7\x58"s));

class MidiFileTest : public testing::Test {
protected:
    MidiFileTest() { host.writeSound("in.wav", noise(2, 48000), 48000); }

    HostProgram::Result run(const std::vector<std::string>& options) {
        std::vector<std::string> words{"render", ZELK_TEST_PLUGIN, host.path("in.wav"), host.path("out.wav"),
                                       "--strict"};
        words.insert(words.end(), options.begin(), options.end());
        return host.run(words);
    }

    HostProgram host;
};

TEST_F(MidiFileTest, ControllersAreHeardOnTheirSampleInEveryFormat) {
    host.writeText("moves.txt", "0, Gain, -6 dB\n0.5, Gain, 0 dB\n0.75, Gain, -12 dB\n");
    ASSERT_EQ(run({"--automate", host.path("moves.txt")}).status, 0);
    const Sound expected = host.readSound("out.wav");
    for (const std::string& file : {oneTrack, twoTracks, milliseconds})
        for (const char* const block : {"17", "256", "100000"}) {
            host.writeText("song.mid", file);
            const HostProgram::Result result = run({"--midi", host.path("song.mid"), "--block", block});
            ASSERT_EQ(result.status, 0) << result.errors;
            EXPECT_EQ(host.readSound("out.wav"), expected) << "block " << block;
            EXPECT_EQ(result.errors.find("behind the end") != std::string::npos, file == oneTrack) << result.errors;
        }
    EXPECT_EQ(host.run({"render", ZELK_PLUGIN_FILE, host.path("in.wav"), host.path("out.wav"), "--strict", "--midi",
                        host.path("song.mid")})
                  .status,
              0);
}

TEST_F(MidiFileTest, ABadFileGetsOneLineAndStatusTwo) {
    const auto track = [](const std::string& content) { return song(0, 1, 96, chunk("MTrk", content)); };
    const struct {
        std::string bytes;
        std::string clue;
    } cases[] = {
        {"", "no standard MIDI file"},
        {"RIFF and more", "no standard MIDI file"},
        {oneTrack.substr(0, 10), "cut off"},
        {chunk("MThd", "\0\0\0\1"s), "cut off"},
        {oneTrack.substr(0, oneTrack.size() - 9), "cut off"},
        {song(2, 1, 96, ""), "format 2"},
        {song(0, 1, 0, ""), "unit of time"},
        {song(0, 1, 0xF028, ""), "unit of time"},
        {song(1, 3, 96, chunk("MTrk", end)), "track 2 of 3"},
        {track("\0\7\x40"s), "track 1 holds data without a status"},
        {track("\0\xB0\7\x40\0\xFF\1\0\0\7\x40"s), "data without a status"},
        {track("\0\xB0\7\xB0\7\x40"s), "cut short"},
        {track("\0\xB0\7"s), "track 1 is cut off"},
        {track("\0\xF8"s), "status that files do not have"},
        {track("\x81\x82\x83\x84\5\xB0\7\x40"s), "more than four bytes"},
        {track("\0\xFF\x51\3\0\0\0"s), "tempo"},
        {track("\0\xFF\x51\2\1\1"s), "tempo"},
        {track("\0\xFF\1\x7Fshort"s), "cut off"},
    };
    for (const auto& wrong : cases) {
        host.writeText("song.mid", wrong.bytes);
        const HostProgram::Result result = run({"--midi", host.path("song.mid")});
        EXPECT_EQ(result.status, 2) << wrong.clue;
        EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1) << result.errors;
        EXPECT_NE(result.errors.find("song.mid"), std::string::npos) << result.errors;
        EXPECT_NE(result.errors.find(wrong.clue), std::string::npos) << wrong.clue << ": " << result.errors;
    }
    EXPECT_EQ(run({"--midi", host.path("gone.mid")}).status, 2);
    EXPECT_EQ(run({"--midi", host.path("out.wav")}).status, 2);
    EXPECT_EQ(host.files(), (std::vector<std::string>{"in.wav", "song.mid"}));
}

} // namespace
