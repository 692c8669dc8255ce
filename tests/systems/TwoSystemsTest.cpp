#include "tests/tools/HostProgram.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace {

constexpr const char* foreignName = "Ünïcødé プリセット";

using Words = std::vector<std::string>;

std::string bytesOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Peak of the difference below the peak of the first, in dB.
double nullDepth(const Sound& a, const Sound& b) {
    double peak = 0.0;
    double difference = 0.0;
    for (std::size_t channel = 0; channel < a.size(); ++channel) {
        for (std::size_t i = 0; i < a[channel].size(); ++i) {
            peak = std::max(peak, std::abs(double{a[channel][i]}));
            difference = std::max(difference, std::abs(double{a[channel][i]} - double{b[channel][i]}));
        }
    }
    return 20.0 * std::log10(std::max(difference, 1e-30) / peak);
}

class TwoSystems : public testing::Test {
protected:
    TwoSystems() { host.writeSound("in.wav", noise(2, 96000), 48000); }

    HostProgram::Result runHere(const Words& words) const { return host.run(words); }
    HostProgram::Result runThere(const Words& words) const { return host.runProgram(ZELK_WINDOWS_HOST_PROGRAM, words); }
    HostProgram::Result registry(const Words& words) const {
        Words all{"reg"};
        all.insert(all.end(), words.begin(), words.end());
        return host.runProgram(ZELK_WINE, all);
    }

    Sound render(bool here, const Words& options, const std::string& input = "in.wav") const {
        Words words{"render", here ? ZELK_PLUGIN_FILE : ZELK_WINDOWS_PLUGIN_FILE, host.path(input),
                    host.path("out.wav")};
        words.insert(words.end(), options.begin(), options.end());
        std::filesystem::remove(host.path("out.wav"));
        const HostProgram::Result result = here ? runHere(words) : runThere(words);
        EXPECT_EQ(result.status, 0) << result.output << result.errors;
        return host.readSound("out.wav");
    }

    void expectNull(const Words& options) const {
        const Sound here = render(true, options);
        const Sound there = render(false, options);
        ASSERT_EQ(here.size(), 2u);
        ASSERT_EQ(there.size(), 2u);
        ASSERT_EQ(here[0].size(), there[0].size());
        ASSERT_GT(nullDepth(here, noise(2, here[0].size())), -40.0) << "nothing was rendered";
        const double depth = nullDepth(here, there);
        EXPECT_LT(depth, -120.0) << testing::PrintToString(options);
        std::printf("null at %.1f dB: %s\n", depth, testing::PrintToString(options).c_str());
    }

    const HostProgram host;
    const Words bands{"--set", "Band 1 Used=Used",        "--set", "Band 1 Frequency=120 Hz",
                      "--set", "Band 1 Gain=9 dB",        "--set", "Band 2 Used=Used",
                      "--set", "Band 2 Shape=High Shelf", "--set", "Band 2 Frequency=5000 Hz",
                      "--set", "Band 2 Gain=-6 dB"};
};

TEST_F(TwoSystems, RenderTheSameInEveryModeAtAnyBlockLength) {
    for (const char* const mode : {"Zero Latency", "Natural Phase", "Linear Phase"}) {
        for (const char* const block : {"64", "1000"}) {
            Words options = bands;
            options.insert(options.end(), {"--block", block, "--set", std::string("Processing Mode=") + mode});
            expectNull(options);
        }
    }
    for (const char* const preset : {"De-Esser", "Bass Guitar Weight", "Mono Bass"})
        expectNull({"--preset", preset});
}

TEST_F(TwoSystems, SaveTheSameStateByteForByteAndReadThatOfTheOther) {
    Words options = bands;
    options.insert(options.end(), {"--save-state", host.path("here.state")});
    const Sound wanted = render(true, options);
    options.back() = host.path("there.state");
    render(false, options);
    const std::string here = host.readText("here.state");
    EXPECT_GT(here.size(), 1000u);
    EXPECT_EQ(here, host.readText("there.state"));
    EXPECT_LT(nullDepth(wanted, render(false, {"--state", host.path("here.state")})), -120.0);
    EXPECT_EQ(wanted, render(true, {"--state", host.path("there.state")}));
    EXPECT_EQ(bytesOf(ZELK_FACTORY_FILE), bytesOf(ZELK_WINDOWS_FACTORY_FILE)) << "the factory presets";
}

TEST_F(TwoSystems, WindowsLivesWithForeignNamesLongPathsAndReadOnlyFolders) {
    const auto length = [](const std::string& path) { return std::filesystem::path(path).u16string().size(); };
    std::string folder = host.path(foreignName);
    while (length(folder) < 216)
        folder.append("/").append(std::min<std::size_t>(60, 215 - length(folder)), 'x');
    std::filesystem::create_directories(folder);
    const std::string plugin = folder + "/" + foreignName + ".clap";
    const std::string state = folder + "/" + foreignName + ".state";
    EXPECT_GE(length(plugin), 238u) << "240 with the drive";
    std::filesystem::copy_file(ZELK_WINDOWS_PLUGIN_FILE, plugin);
    const Words words{"render", plugin, host.path("in.wav"), folder + "/out.wav", "--save-state", state};
    HostProgram::Result result = runThere(words);
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_GT(bytesOf(state).size(), 1000u);
    result = runThere({"info", plugin});
    EXPECT_NE(result.output.find(foreignName), std::string::npos) << result.output << result.errors;

    const std::string refused = folder + "/kept.state";
    host.writeText("kept", "kept");
    std::filesystem::copy_file(host.path("kept"), refused);
    std::filesystem::permissions(refused, std::filesystem::perms::owner_read);
    result = runThere({"render", plugin, host.path("in.wav"), folder + "/out.wav", "--save-state", refused});
    EXPECT_EQ(result.status, 2) << result.errors;
    EXPECT_EQ(bytesOf(refused), "kept");
}

TEST_F(TwoSystems, WhatOneProcessPutsIntoTheRegistryAnotherReads) {
    const std::string key = R"(HKCU\Software\Tessivane\Zelk\3.0)";
    registry({"delete", R"(HKCU\Software\Tessivane)", "/f"});
    render(false, {}); // the first start writes every key
    std::string told = registry({"query", key}).output;
    for (const char* const expected :
         {"LastVersion", "PresetFolder", "REG_SZ", R"(\Tessivane\Presets\Zelk 3\)", "RetinaEnabled", "REG_DWORD"})
        EXPECT_NE(told.find(expected), std::string::npos) << expected << "\n" << told;

    const std::string folder = std::string("Z:") + host.path(foreignName);
    std::filesystem::create_directories(host.path(foreignName));
    std::filesystem::copy_file(host.path("in.wav"), host.path(foreignName) + "/No Preset.tvp");
    std::ofstream(host.path(foreignName) + "/" + foreignName + ".tvp") << "[Preset]\nSignature=ZK3p\nVersion=4\n";
    std::string backslashes = folder;
    std::replace(backslashes.begin(), backslashes.end(), '/', '\\');
    EXPECT_EQ(registry({"add", key, "/v", "PresetFolder", "/t", "REG_SZ", "/d", backslashes, "/f"}).status, 0);
    const HostProgram::Result presets = runThere({"presets", ZELK_WINDOWS_PLUGIN_FILE});
    EXPECT_NE(presets.output.find("1 presets in " + backslashes), std::string::npos)
        << presets.output << presets.errors;
    EXPECT_NE(presets.output.find(std::string("  ") + foreignName), std::string::npos) << presets.output;
    registry({"delete", R"(HKCU\Software\Tessivane)", "/f"});
}

} // namespace
