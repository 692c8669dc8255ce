#include "tests/framework/ProcessorTestObjects.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace {

using Log = std::vector<std::string>;

TEST(GenericPluginProcessor, MidiSplitsTheSpanAtItsOffsetAndItsChangesHoldFromThere) {
    RecordingProcessor processor;
    processor.reset();
    processor.log.clear();
    processor.receiveHostMidi({0x90, 60, 100, 0, 100});
    processor.receiveHostMidi({0xB0, 7, 127, 0, 100});
    processor.receiveHostMidi({0x80, 60, 0, 0, 700}); // beyond the span: decoded at its end
    processor.run(400);
    EXPECT_EQ(processor.log, (Log{"run 100", "midi 144", "midi 176", "apply 0", "run 256", "run 44", "midi 128"}));
    processor.log.clear();
    processor.run(10);
    EXPECT_EQ(processor.log, Log{"run 10"});
}

TEST(GenericPluginProcessor, AnOpenBracketHoldsChangesBackAndTheyArriveTogether) {
    RecordingProcessor processor;
    processor.reset();
    processor.beginChange();
    processor.beginChange();
    processor.gain.setValue(0.5f, GenericParameterOwner::silent);
    processor.endChange();
    processor.bypassed.setValue(1.0f, GenericParameterOwner::silent);
    processor.log.clear();
    processor.run(8);
    EXPECT_EQ(processor.log, Log{"run 8"});
    processor.endChange();
    processor.log.clear();
    processor.run(8);
    EXPECT_EQ(processor.log, (Log{"apply 0", "apply 1", "run 8"}));
}

TEST(GenericPluginProcessor, ABatchIsNeverHeardInPart) {
    // Pairs of equal values are written in brackets; whatever the audio thread applies must leave the pair equal.
    class PairProcessor final : public GenericPluginProcessor {
    public:
        PairProcessor() : GenericPluginProcessor(1, 2) { init(); }
        FloatPluginParameter first{this, "First"};
        FloatPluginParameter second{this, "Second"};
        int applied = 0;

    protected:
        void applyParameter(std::int32_t) noexcept REALTIME override { ++applied; }
    } processor;
    processor.reset();
    std::atomic<bool> stop{false};
    std::thread writer([&] {
        for (int i = 1; i <= 20000; ++i) {
            processor.beginChange();
            processor.first.setValue(static_cast<float>(i % 100) / 100.0f, GenericParameterOwner::silent);
            processor.second.setValue(static_cast<float>(i % 100) / 100.0f, GenericParameterOwner::silent);
            processor.endChange();
        }
        stop = true;
    });
    std::vector<float> silence(4, 0.0f);
    std::vector<float> sound(4);
    const float* inputs[] = {silence.data(), silence.data()};
    float* const outputs[] = {sound.data(), sound.data()};
    while (!stop) {
        std::uint32_t flags = 0;
        processor.process({inputs, outputs}, 4, flags);
        ASSERT_EQ(processor.applied % 2, 0);
    }
    writer.join();
}

TEST(GenericPluginProcessor, ChangesThatFoundNoRoomAreMadeUpFor) {
    RecordingProcessor processor;
    processor.reset();
    processor.run(8);
    const auto change = [&](float value) { processor.gain.setValue(value, GenericParameterOwner::silent); };
    for (int i = 0; i < 70000; ++i) // more than the queue can ever hold
        change(i % 2 == 0 ? 0.25f : 0.75f);
    processor.bypassed.setValue(1.0f, GenericParameterOwner::silent);
    processor.log.clear();
    processor.run(8);
    EXPECT_EQ(processor.log, (Log{"apply 0", "apply 1", "apply 2", "run 8"}));
    processor.log.clear();
    processor.run(4096);
    EXPECT_EQ(processor.outputs[0].back(), 1.0f) << "the bypass that was dropped is in force";
    change(0.5f);
    processor.log.clear();
    processor.run(8);
    EXPECT_EQ(processor.log.front(), "apply 0") << "the queue works again";
}

TEST(GenericPluginProcessor, WhatIsHeardInTheEndIsWhatTheParameterHolds) {
    struct Listener final : ValueAssignable<float> {
        void assign(float value) override { heard = value; }
        float heard = 0.0f;
    };
    Listener listener;
    RecordingProcessor processor;
    processor.gain.addListener(&listener);
    processor.gain.setValue(0.75f, GenericParameterOwner::silent);
    // As when another thread stores behind this one and has queued before it.
    processor.gain.setValue(0.5f, GenericParameterOwner::silent | GenericParameterOwner::unheard);
    processor.run(16);
    EXPECT_EQ(listener.heard, 0.5f);
}

} // namespace
