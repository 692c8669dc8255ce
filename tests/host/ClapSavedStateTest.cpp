#include "tests/support/ClapTestStream.h"
#include "tests/support/TemporaryHome.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdlib>
#include <random>
#include <string>

namespace {

class ClapSavedStateTest : public testing::Test {
protected:
    ClapSavedStateTest() {
        const char* const given = std::getenv("SEED");
        seed = given != nullptr ? static_cast<unsigned>(std::atoi(given)) : std::random_device()();
        random.seed(seed);
    }

    static std::string save(const ClapTestInstance& instance) {
        ClapTestStream stream;
        EXPECT_TRUE(::save(instance, stream));
        return stream.bytes;
    }
    static bool load(const ClapTestInstance& instance, const std::string& bytes) {
        ClapTestStream stream;
        stream.bytes = bytes;
        return ::load(instance, stream);
    }

    static void put(std::string& bytes, std::size_t offset, std::uint32_t word) {
        for (int i = 0; i < 4; ++i)
            bytes[offset + static_cast<std::size_t>(i)] = static_cast<char>(word >> (8 * i) & 0xFF);
    }
    static std::size_t offsetOf(clap_id id) { return 12 + std::size_t{id} * 4; }

    // A state with every value somewhere in its range, by the format of the block.
    std::string randomState(const ClapTestInstance& instance) {
        std::string bytes = save(instance);
        const auto* params = instance.extension<clap_plugin_params>(CLAP_EXT_PARAMS);
        for (clap_id id = 0; id < params->count(instance.plugin); ++id) {
            clap_param_info info{};
            EXPECT_TRUE(params->get_info(instance.plugin, id, &info));
            const double part = static_cast<double>(random() % 10001) / 10000.0;
            double value = info.min_value + part * (info.max_value - info.min_value);
            if ((info.flags & CLAP_PARAM_IS_STEPPED) != 0)
                value = std::floor(value);
            put(bytes, offsetOf(id), std::bit_cast<std::uint32_t>(static_cast<float>(value)));
        }
        return bytes;
    }

    std::vector<std::vector<float>> render(ClapTestInstance& instance) {
        std::vector<std::vector<float>> input(4, std::vector<float>(3000));
        std::mt19937 noise(7);
        for (std::vector<float>& channel : input)
            for (float& sample : channel)
                sample = static_cast<float>(static_cast<double>(noise() % 20001) / 10000.0 - 1.0);
        instance.start(48000.0, 256);
        auto output = instance.run(input, 256);
        instance.stop();
        return output;
    }

    const TemporaryHome home;
    const ClapTestLibrary library{ZELK_PLUGIN_FILE};
    ClapTestHost host;
    unsigned seed = 0;
    std::mt19937 random;
};

TEST_F(ClapSavedStateTest, TwoHundredRandomStatesComeBackByteForByteAndSoundTheSame) {
    SCOPED_TRACE(testing::Message() << "SEED=" << seed);
    ClapTestInstance first(library, host);
    for (int i = 0; i < 200; ++i) {
        std::string state = randomState(first);
        const clap_id bypass = 318;
        const clap_id mode = 312;
        put(state, offsetOf(bypass), 0);
        put(state, offsetOf(mode), std::bit_cast<std::uint32_t>(static_cast<float>(i % 3)));
        ASSERT_TRUE(load(first, state));
        const std::string saved = save(first);
        ASSERT_EQ(saved, state) << i;
        if (i % 20 > 2) // sounds are compared for a few of each mode
            continue;
        ClapTestInstance fresh(library, host);
        ASSERT_TRUE(load(fresh, saved));
        ASSERT_EQ(save(fresh), saved);
        ASSERT_EQ(render(fresh), render(first)) << i;
    }
}

TEST_F(ClapSavedStateTest, AStateThatEndsEarlySetsWhatItHoldsAndNoMore) {
    ClapTestInstance instance(library, host);
    const std::string before = save(instance);
    const std::string state = randomState(instance);
    EXPECT_FALSE(load(instance, state.substr(0, 11)));
    EXPECT_EQ(save(instance), before);
    std::string huge = state.substr(0, offsetOf(3));
    put(huge, 8, 0x7FFFFFFF);
    EXPECT_FALSE(load(instance, huge));
    EXPECT_EQ(save(instance).substr(0, offsetOf(3)).substr(12), huge.substr(12));
    EXPECT_EQ(save(instance).substr(offsetOf(3), 1000), before.substr(offsetOf(3), 1000));
    EXPECT_FALSE(load(instance, state.substr(0, state.size() - 1)));
    EXPECT_EQ(save(instance).substr(0, offsetOf(358)), state.substr(0, offsetOf(358)));
    EXPECT_EQ(host.dirtyMarks, 0);
}

TEST_F(ClapSavedStateTest, APresetLoadTellsTheHostOnceAndAFailureWhy) {
    ClapTestInstance instance(library, host);
    const auto* presets = instance.extension<clap_plugin_preset_load>(CLAP_EXT_PRESET_LOAD);
    const std::string path = home.path("Documents/Tessivane/Presets/Zelk 3/Dynamic/Vocals/De-Esser.tvp");
    host.dirtyMarks = 0;
    ASSERT_TRUE(presets->from_location(instance.plugin, CLAP_PRESET_DISCOVERY_LOCATION_FILE, path.c_str(), nullptr));
    EXPECT_EQ(host.presetsLoaded, std::vector<std::string>{path});
    EXPECT_EQ(host.dirtyMarks, 1);
    EXPECT_EQ(host.flushRequests, 1);
    EXPECT_EQ(valueOf(instance, 13), 1.0);
    instance.start(48000.0, 64);
    instance.process(64);
    EXPECT_EQ(instance.taken.values.size(), 358u);
    const std::string none = home.path("none.tvp");
    EXPECT_FALSE(presets->from_location(instance.plugin, CLAP_PRESET_DISCOVERY_LOCATION_FILE, none.c_str(), nullptr));
    EXPECT_FALSE(presets->from_location(instance.plugin, CLAP_PRESET_DISCOVERY_LOCATION_PLUGIN, path.c_str(), "x"));
    ASSERT_EQ(host.presetErrors.size(), 1u);
    EXPECT_EQ(host.presetErrors[0],
              none + ": Unknown preset signature (likely intended for another Tessivane plug-in): ");
    EXPECT_EQ(host.presetsLoaded.size(), 1u);
    EXPECT_EQ(valueOf(instance, 13), 1.0);
}

} // namespace
