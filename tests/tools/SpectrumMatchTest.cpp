// The commands that look at sound as the displays do: spectra and EQ Match.
#include "tests/tools/HostProgram.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

namespace {

constexpr int rate = 48000;

Sound sines(double hz, double amplitude) {
    std::vector<float> wave(rate);
    for (std::size_t i = 0; i < wave.size(); ++i)
        wave[i] =
            static_cast<float>(amplitude * std::sin(2.0 * 3.141592653589793 * hz * static_cast<double>(i) / rate));
    return {wave, wave};
}

// The numbers that stand behind this word, in order.
std::vector<double> numbersBehind(const std::string& text, const std::string& word) {
    std::vector<double> numbers;
    for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1))
        numbers.push_back(std::stod(text.substr(at + word.size())));
    return numbers;
}

class SpectrumMatchTest : public testing::Test {
protected:
    HostProgram host;
};

TEST_F(SpectrumMatchTest, ASpectrumShowsInputOutputAndSideChainOfAnyPlugInAtTheMomentWanted) {
    Sound input = sines(1000.0, 0.5);
    for (std::vector<float>& channel : input) // another tone in the second half
        for (std::size_t i = channel.size() / 2; i < channel.size(); ++i)
            channel[i] =
                static_cast<float>(0.5 * std::sin(2.0 * 3.141592653589793 * 4000.0 * static_cast<double>(i) / rate));
    host.writeSound("in.wav", input, rate);
    host.writeSound("side.wav", sines(250.0, 0.25), rate);
    const auto spectrum = [&](const std::vector<std::string>& options) {
        std::vector<std::string> words{"spectrum", ZELK_PLUGIN_FILE,   host.path("in.wav"),
                                       "--png",    host.path("a.png"), "--tilt",
                                       "0",        "--speed",          "0.02"};
        words.insert(words.end(), options.begin(), options.end());
        const HostProgram::Result result = host.run(words);
        EXPECT_EQ(result.status, 0) << result.errors;
        EXPECT_EQ(host.readText("a.png").substr(1, 3), "PNG");
        return result.output;
    };
    const std::string late = spectrum({"--sidechain", host.path("side.wav"), "--set", "Band 1 Used=Used", "--set",
                                       "Band 1 Frequency=4000 Hz", "--set", "Band 1 Gain=-12 dB"});
    const std::vector<double> hz = numbersBehind(late, "highest at");
    const std::vector<double> db = numbersBehind(late, "Hz:");
    ASSERT_EQ(hz.size(), 3u) << late;
    ASSERT_EQ(db.size(), 3u) << late;
    EXPECT_NEAR(hz[0], 4000.0, 60.0);
    EXPECT_NEAR(db[0], -6.0, 1.0);
    EXPECT_NEAR(db[1], -18.0, 1.0);
    EXPECT_NEAR(hz[2], 250.0, 10.0);
    EXPECT_NEAR(db[2], -12.0, 1.0);
    EXPECT_NEAR(numbersBehind(spectrum({"--at", "0.4"}), "highest at")[0], 1000.0, 15.0);
}

TEST_F(SpectrumMatchTest, AMatchFindsTheBandsThatMadeTheReferenceAndItsErrorFallsWithEach) {
    host.writeSound("in.wav", noise(2, 3 * rate), rate);
    ASSERT_EQ(host.run({"render", ZELK_PLUGIN_FILE, host.path("in.wav"), host.path("wanted.wav"), "--set",
                        "Band 1 Used=Used", "--set", "Band 1 Frequency=800 Hz", "--set", "Band 1 Gain=10 dB", "--set",
                        "Band 2 Used=Used", "--set", "Band 2 Frequency=6 kHz", "--set", "Band 2 Gain=-7 dB"})
                  .status,
              0);
    const HostProgram::Result result = host.run({"match", ZELK_PLUGIN_FILE, host.path("in.wav"),
                                                 host.path("wanted.wav"), "--bands", "2", "--png", host.path("m.png")});
    ASSERT_EQ(result.status, 0) << result.errors;
    std::vector<double> errors;
    std::istringstream lines(result.output);
    std::string first;
    for (std::string line; std::getline(lines, line);) {
        if (errors.size() == 1)
            first = line;
        errors.push_back(std::stod(line.substr(line.rfind("dB^2") - 10)));
    }
    ASSERT_EQ(errors.size(), 3u) << result.output;
    EXPECT_GT(errors[0], 3.0);
    EXPECT_LT(errors[1], 0.6 * errors[0]);
    EXPECT_LT(errors[2], 0.1 * errors[0]);
    EXPECT_NE(first.find("Bell"), std::string::npos) << first;
    EXPECT_NEAR(std::stod(first.substr(first.find("dB/oct") + 6)), 800.0, 100.0) << first;
    EXPECT_EQ(host.readText("m.png").substr(1, 3), "PNG");

    const HostProgram::Result other = host.run(
        {"match", ZELK_TEST_PLUGIN, host.path("in.wav"), host.path("wanted.wav"), "--png", host.path("x.png")});
    EXPECT_EQ(other.status, 2);
    EXPECT_NE(other.errors.find("Zelk alone"), std::string::npos) << other.errors;
}

} // namespace
