// What the host's audio thread does in the library, watched: no memory, no lock. Parts of a block that the library
// cannot know are the host's own callbacks, which keep the same rule.
#include "tests/support/ClapTestHost.h"
#include "tests/support/RealtimeWatch.h"

#include "base/Realtime.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>

namespace {

class ClapRealtimeTest : public testing::Test {
protected:
    // A block full of what a host can send: values at all places, wrong ids, numbers that are none, notes.
    void fill(ClapTestInstance& instance, std::uint32_t frames) {
        const auto* params = instance.extension<clap_plugin_params>(CLAP_EXT_PARAMS);
        const std::uint32_t count = params->count(instance.plugin);
        instance.events.clear();
        for (std::uint32_t time = 0; time < frames; time += 1 + static_cast<std::uint32_t>(random() % 97)) {
            clap_param_info info{};
            const auto id = static_cast<std::uint32_t>(random() % count);
            ASSERT_TRUE(params->get_info(instance.plugin, id, &info));
            const double position = std::uniform_real_distribution<double>(-0.1, 1.1)(random);
            instance.events.addValue(time, id, info.min_value + position * (info.max_value - info.min_value));
            instance.events.addMidi(time, 0xB0, static_cast<std::uint8_t>(random() % 128), 64);
            if (random() % 8 == 0) {
                instance.events.addValue(time, count + 5, 0.5);
                instance.events.addValue(time, id, std::numeric_limits<double>::quiet_NaN());
            }
        }
    }

    const ClapTestLibrary library{ZELK_PLUGIN_FILE};
    ClapTestHost host;
    std::mt19937 random{11};
};

TEST_F(ClapRealtimeTest, TheWatchReachesIntoTheLibrary) {
    const clap_plugin_factory& factory = library.factory();
    const RealtimeWatch::Count count;
    {
        const RealtimeScope scope;
        const clap_plugin* const plugin =
            factory.create_plugin(&factory, &host.host, factory.get_plugin_descriptor(&factory, 0)->id);
        plugin->destroy(plugin);
    }
    EXPECT_GT(count.offences().allocations, 0);
    EXPECT_GT(count.offences().frees, 0);
    {
        const RealtimeScope scope;
        library.entry().init(ZELK_PLUGIN_FILE);
        library.entry().deinit();
    }
    EXPECT_GT(count.offences().locks, 0);
}

TEST_F(ClapRealtimeTest, BlocksOfEveryKindTakeNoMemoryAndNoLock) {
    for (const clap_id layout : {0u, 1u, 16u}) {
        ClapTestInstance instance(library, host);
        ASSERT_TRUE(instance.extension<clap_plugin_audio_ports_config>(CLAP_EXT_AUDIO_PORTS_CONFIG)
                        ->select(instance.plugin, layout));
        instance.start(48000.0, 2048);
        clap_event_transport transport{};
        transport.flags = CLAP_TRANSPORT_HAS_TEMPO | CLAP_TRANSPORT_HAS_BEATS_TIMELINE | CLAP_TRANSPORT_IS_PLAYING;
        transport.tempo = 97.0;
        instance.transport = &transport;
        const int scopesBefore = RealtimeWatch::scopesEntered();
        const RealtimeWatch::Count count;
        for (int block = 0; block < 200; ++block) {
            const auto frames = static_cast<std::uint32_t>(random() % 2049);
            for (auto& input : instance.inputs)
                std::fill(input.begin(), input.end(), block % 50 < 25 ? 0.3f : 0.0f);
            fill(instance, frames);
            transport.song_pos_beats += CLAP_BEATTIME_FACTOR / 4;
            ASSERT_EQ(instance.process(frames), CLAP_PROCESS_CONTINUE);
            if (block % 20 == 7)
                instance.plugin->reset(instance.plugin);
            if (block % 20 == 13)
                instance.plugin->on_main_thread(instance.plugin);
            instance.taken.values.clear();
        }
        // Where the rule is lifted on purpose, a permit says so, and nothing is counted.
        EXPECT_EQ(count.offences().allocations, 0) << "layout " << layout;
        EXPECT_EQ(count.offences().frees, 0) << "layout " << layout;
        EXPECT_EQ(count.offences().locks, 0) << "layout " << layout;
        EXPECT_GE(RealtimeWatch::scopesEntered() - scopesBefore, 200) << "the library did not tell of its scopes";
    }
}

} // namespace
