#include "tests/support/ClapTestHost.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace {

class ClapParametersTest : public testing::Test {
protected:
    clap_param_info infoOf(std::uint32_t index) const {
        clap_param_info info{};
        EXPECT_TRUE(params->get_info(plugin, index, &info));
        return info;
    }
    std::string textOf(clap_id id, double value) const {
        char text[256];
        return params->value_to_text(plugin, id, value, text, sizeof(text)) ? text : "(refused)";
    }
    // Nothing when the text is refused.
    bool parse(clap_id id, std::string_view text, double& value) const {
        return params->text_to_value(plugin, id, std::string(text).c_str(), &value);
    }

    const ClapTestLibrary library{ZELK_PLUGIN_FILE};
    ClapTestHost host;
    ClapTestInstance instance{library, host};
    const clap_plugin* const plugin = instance.plugin;
    const clap_plugin_params* const params = instance.extension<clap_plugin_params>(CLAP_EXT_PARAMS);
};

TEST_F(ClapParametersTest, TheTableIsThatOfTheProduct) {
    ASSERT_EQ(params->count(plugin), 358u);
    struct Row {
        clap_id id;
        const char* name;
        const char* module;
        double minimum, maximum, standard;
        std::uint32_t flags;
    };
    constexpr std::uint32_t both = CLAP_PARAM_IS_AUTOMATABLE | CLAP_PARAM_IS_STEPPED;
    const Row rows[] = {
        {8, "Band 1 Shape", "Band 1", 0, 8, 0, both},
        {82, "Band 7 Dynamic Range", "Band 7", -30, 30, 0, CLAP_PARAM_IS_AUTOMATABLE},
        {7, "Band 1 Q", "Band 1", 0, 1, 0.5, CLAP_PARAM_IS_AUTOMATABLE},
        {11, "Band 1 Speakers", "Band 1", 0, 14, 1, both},
        {311, "Band 24 Solo", "Band 24", 0, 1, 0, CLAP_PARAM_IS_STEPPED},
        {312, "Processing Mode", "", 0, 2, 0, CLAP_PARAM_IS_STEPPED},
        {313, "Processing Resolution", "", 0, 4, 1, CLAP_PARAM_IS_STEPPED},
        {314, "Gain Scale", "", 0, 2, 1, CLAP_PARAM_IS_AUTOMATABLE},
        {318, "Bypass", "", 0, 1, 0, both},
        {323, "Analyzer External Spectrum", "Analyzer", -2, 65536, -1, CLAP_PARAM_IS_STEPPED},
        {324, "Analyzer Range", "Analyzer", 0, 2, 1, CLAP_PARAM_IS_STEPPED},
        {330, "Spectrum Grab", "Analyzer", 0, 1, 1, CLAP_PARAM_IS_STEPPED},
        {331, "Display Range", "", 0, 3, 2, CLAP_PARAM_IS_STEPPED},
        {332, "Receive Midi", "", 0, 1, 0, both},
        {333, "Solo Gain", "", -20, 20, 0, 0},
        {357, "Band 24 External Side Chain", "Band 24", 0, 1, 0, both},
    };
    for (const Row& row : rows) {
        const clap_param_info info = infoOf(row.id);
        EXPECT_STREQ(info.name, row.name);
        EXPECT_STREQ(info.module, row.module) << row.name;
        EXPECT_EQ(info.min_value, row.minimum) << row.name;
        EXPECT_EQ(info.max_value, row.maximum) << row.name;
        EXPECT_EQ(info.default_value, row.standard) << row.name;
        EXPECT_EQ(info.flags, row.flags) << row.name;
    }
    EXPECT_NEAR(infoOf(2).min_value, 3.321928, 1e-6) << "the stored value, not Hz";
    EXPECT_NEAR(infoOf(2).max_value, 14.872674, 1e-6);
}

TEST_F(ClapParametersTest, WhatAHostReadsBeforeAnyEditIsTheDefault) {
    for (std::uint32_t index = 0; index < 358; ++index) {
        const clap_param_info info = infoOf(index);
        double value = -99.0;
        EXPECT_EQ(info.id, index);
        EXPECT_EQ(info.cookie, nullptr);
        EXPECT_EQ(info.flags & ~(CLAP_PARAM_IS_AUTOMATABLE | CLAP_PARAM_IS_STEPPED), 0u);
        ASSERT_TRUE(params->get_value(plugin, index, &value));
        EXPECT_EQ(value, info.default_value) << info.name;
    }
    EXPECT_EQ(host.dirtyMarks, 0);
}

TEST_F(ClapParametersTest, EveryTextComesBackAsTheValueThatItTells) {
    for (clap_id id = 0; id < 358; ++id) {
        const clap_param_info info = infoOf(id);
        const bool stepped = (info.flags & CLAP_PARAM_IS_STEPPED) != 0;
        const double range = info.max_value - info.min_value;
        const int steps = stepped ? static_cast<int>(std::min(range, 300.0)) : 300;
        for (int step = 0; step <= steps; ++step) {
            const double wanted = info.min_value + (stepped ? step : range * step / steps);
            const std::string text = textOf(id, wanted);
            double value = 1e9;
            ASSERT_TRUE(parse(id, text, value)) << info.name << ": " << text;
            ASSERT_TRUE(value >= info.min_value && value <= info.max_value) << info.name << ": " << text;
            ASSERT_EQ(textOf(id, value), text) << info.name;
            if (stepped) {
                ASSERT_EQ(value, wanted) << info.name;
            }
        }
    }
}

TEST_F(ClapParametersTest, TextsThatMeanNothingAreRefusedAndChangeNothing) {
    const std::string longWord(100000, 'a');
    const std::string brackets(100000, '(');
    const std::initializer_list<std::string_view> garbage{
        "",          " ", "\t\n", "xyz",       "\xC3\xA9\xE2\x82\xAC", "\xff\xfe", "12z",   "--1", "nan", "0x10 H",
        "1 kHz kHz", "%", "+",    "1\xC2\xB5", "\xEF\xBC\x91",         longWord,   brackets};
    for (clap_id id = 0; id < 358; ++id)
        for (const std::string_view text : garbage) {
            double value = 4711.0;
            ASSERT_FALSE(parse(id, text, value)) << infoOf(id).name << ": " << text.substr(0, 20);
            ASSERT_EQ(value, 4711.0) << infoOf(id).name;
        }
    // Endless digits are a number, and numbers are clamped.
    double value = 0.0;
    EXPECT_TRUE(parse(3, "9" + std::string(300, '9'), value));
    EXPECT_EQ(value, 30.0);
    EXPECT_FALSE(params->text_to_value(plugin, 358, "1", &value));
    EXPECT_FALSE(params->text_to_value(plugin, 0, nullptr, &value));
    EXPECT_FALSE(params->text_to_value(plugin, 0, "Used", nullptr));
}

TEST_F(ClapParametersTest, ATextIsCutToItsBufferAndNothingBehindItIsTouched) {
    for (clap_id id = 0; id < 358; id += 1) {
        const double value = infoOf(id).max_value;
        const std::string whole = textOf(id, value);
        for (std::uint32_t size = 0; size <= 64; ++size) {
            std::vector<char> buffer(size + 16, '\x5a');
            const bool told = params->value_to_text(plugin, id, value, buffer.data() + 8, size);
            ASSERT_EQ(told, size > 0);
            ASSERT_EQ(std::count(buffer.begin(), buffer.begin() + 8, '\x5a'), 8);
            ASSERT_EQ(std::count(buffer.end() - 8, buffer.end(), '\x5a'), 8) << size;
            if (size > 0) {
                ASSERT_EQ(std::string(buffer.data() + 8), whole.substr(0, size - 1)) << infoOf(id).name;
            }
        }
    }
}

TEST_F(ClapParametersTest, IdsAndValuesFromOutsideAreRefused) {
    clap_param_info info{};
    double value = 0.0;
    char text[8];
    for (const std::uint32_t id : {358u, 359u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
        EXPECT_FALSE(params->get_info(plugin, id, &info));
        EXPECT_FALSE(params->get_value(plugin, id, &value));
        EXPECT_FALSE(params->value_to_text(plugin, id, 0.0, text, sizeof(text)));
    }
    EXPECT_FALSE(params->get_info(plugin, 0, nullptr));
    EXPECT_FALSE(params->get_value(plugin, 0, nullptr));
    for (const double bad : {std::nan(""), HUGE_VAL, -HUGE_VAL})
        EXPECT_FALSE(params->value_to_text(plugin, 3, bad, text, sizeof(text)));
    EXPECT_EQ(textOf(8, 1e30), "Flat Tilt");
    EXPECT_EQ(textOf(8, -1e30), "Bell");

    instance.start(48000.0, 64);
    instance.events.addValue(0, 358, 1.0);
    instance.events.addValue(0, 0xFFFFFFFFu, 1.0);
    instance.events.addValue(0, 3, std::nan(""));
    instance.events.addValue(0, 3, HUGE_VAL);
    instance.events.addValue(0, 4, 1e9);
    instance.process(64);
    EXPECT_TRUE(params->get_value(plugin, 3, &value));
    EXPECT_EQ(value, 0.0);
    EXPECT_TRUE(params->get_value(plugin, 4, &value));
    EXPECT_EQ(value, 30.0);
}

TEST_F(ClapParametersTest, AutomationIsReadAtOnceAndFlushedWithoutAudio) {
    double value = 0.0;
    instance.events.addValue(0, 3, 6.0);
    instance.events.addValue(1, 4, 6.0);
    params->flush(plugin, instance.events.list(), instance.taken.list());
    EXPECT_TRUE(params->get_value(plugin, 3, &value));
    EXPECT_EQ(value, 6.0);
    EXPECT_TRUE(params->get_value(plugin, 4, &value));
    EXPECT_EQ(value, 0.0) << "what lies later than now is not a flush's";
    EXPECT_TRUE(instance.taken.values.empty()) << "the host is not told what it said";
    params->flush(plugin, nullptr, nullptr);
}

TEST_F(ClapParametersTest, LatencyFollowsAutomationAndTheHostHearsOnItsMainThread) {
    const auto* const latency = instance.extension<clap_plugin_latency>(CLAP_EXT_LATENCY);
    instance.start(48000.0, 256);
    instance.events.addValue(0, 312, 2.0);
    instance.process(256);
    EXPECT_EQ(host.latencyChanges, 0) << "never on the audio thread";
    EXPECT_GT(host.callbacksAsked, 0);
    plugin->on_main_thread(plugin);
    EXPECT_EQ(host.latencyChanges, 1);
    EXPECT_EQ(latency->get(plugin), 5120u);
    instance.events.clear();
    instance.events.addValue(0, 314, 0.5);
    instance.events.addValue(0, 319, 1.0);
    instance.process(256);
    plugin->on_main_thread(plugin);
    EXPECT_EQ(host.latencyChanges, 1) << "other values leave it alone";
    instance.events.clear();

    // The wet path lags by exactly what is told, and so does the dry path.
    std::vector<std::vector<float>> impulse(4, std::vector<float>(8192, 0.0f));
    for (auto& channel : impulse)
        channel[1000] = 1.0f;
    for (const double bypassed : {0.0, 1.0}) {
        instance.events.addValue(0, 318, bypassed);
        instance.run(std::vector<std::vector<float>>(4, std::vector<float>(16384, 0.0f)), 256);
        instance.events.clear();
        const auto output = instance.run(impulse, 256);
        EXPECT_NEAR(output[1][6120], bypassed != 0.0 ? 1.0f : -1.0f, 1e-6f) << bypassed; // the phase is inverted
        EXPECT_EQ(std::count_if(output[1].begin(), output[1].end(), [](float x) { return std::fabs(x) < 1e-6f; }), 8191)
            << bypassed;
    }
}

} // namespace
