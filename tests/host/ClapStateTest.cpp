#include "tests/support/ClapTestStream.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

class ClapStateTest : public testing::Test {
protected:
    const ClapTestLibrary library{ZELK_PLUGIN_FILE};
    ClapTestHost host;
    ClapTestInstance instance{library, host};
};

TEST_F(ClapStateTest, AStateMovesAllValuesToAnotherInstanceAndItsAudioWithoutEvents) {
    instance.start(48000.0, 512);
    instance.events.addValue(0, 318, 1.0);
    instance.events.addValue(0, 333, 7.5);
    instance.events.addValue(0, 312, 2.0);
    instance.process(512);
    ClapTestStream stream;
    stream.piece = 7;
    ASSERT_TRUE(save(instance, stream)) << "what the audio thread moved is part of it, drained or not";

    ClapTestHost otherHost;
    ClapTestInstance other(library, otherHost);
    other.start(48000.0, 512);
    stream.piece = 11;
    ASSERT_TRUE(load(other, stream));
    for (clap_id id = 0; id < 358; ++id)
        ASSERT_EQ(valueOf(other, id), valueOf(instance, id)) << id;
    EXPECT_EQ(otherHost.rescans, 1);
    EXPECT_EQ(otherHost.latencyChanges, 1) << "once for the whole state";
    EXPECT_EQ(otherHost.dirtyMarks, 0);
    for (auto& input : other.inputs)
        input.assign(512, 0.25f);
    for (int block = 0; block < 12; ++block)
        other.process(512);
    EXPECT_EQ(other.outputs[0][511], 0.25f) << "bypassed, with the latency of the state";
    EXPECT_TRUE(other.taken.values.empty()) << "the host gave these values";
}

TEST_F(ClapStateTest, AStreamThatFailsOrHoldsSomethingElseChangesNothing) {
    ClapTestStream saved;
    ASSERT_TRUE(save(instance, saved));
    instance.events.addValue(0, 3, 6.0);
    const auto* const params = instance.extension<clap_plugin_params>(CLAP_EXT_PARAMS);
    params->flush(instance.plugin, instance.events.list(), instance.taken.list());

    const auto expectRefused = [&](ClapTestStream& stream) {
        EXPECT_FALSE(load(instance, stream));
        EXPECT_EQ(valueOf(instance, 3), 6.0);
    };
    for (const std::string& bytes : {std::string(), std::string("TVBS"), std::string(5000, '\xff')}) {
        ClapTestStream stream;
        stream.bytes = bytes;
        expectRefused(stream);
    }
    ClapTestStream broken;
    broken.bytes = saved.bytes;
    broken.failAfter = 100;
    broken.piece = 100;
    expectRefused(broken);
    ClapTestStream otherFailure;
    otherFailure.failAfter = 0;
    otherFailure.failure = -2;
    expectRefused(otherFailure);
    EXPECT_EQ(host.rescans, 0);

    for (const std::int64_t failure : {std::int64_t{-1}, std::int64_t{0}}) {
        ClapTestStream full;
        full.piece = 100;
        full.failAfter = 500;
        full.failure = failure;
        EXPECT_FALSE(save(instance, full));
    }
    const auto* const state = instance.extension<clap_plugin_state>(CLAP_EXT_STATE);
    EXPECT_FALSE(state->save(instance.plugin, nullptr));
    EXPECT_FALSE(state->load(instance.plugin, nullptr));
}

} // namespace
