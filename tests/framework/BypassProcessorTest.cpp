#include "tests/framework/ProcessorTestObjects.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace {

constexpr std::size_t fadeFrames = 2205; // 50 ms at 44.1 kHz

void setBypass(RecordingProcessor& processor, bool wanted) {
    processor.bypassed.setValue(wanted ? 1.0f : 0.0f, GenericParameterOwner::silent);
}

float largestStep(const std::vector<float>& sound) {
    float largest = 0.0f;
    for (std::size_t i = 1; i < sound.size(); ++i)
        largest = std::max(largest, std::fabs(sound[i] - sound[i - 1]));
    return largest;
}

std::size_t runs(const RecordingProcessor& processor) {
    return static_cast<std::size_t>(std::count_if(processor.log.begin(), processor.log.end(),
                                                  [](const std::string& line) { return line.starts_with("run"); }));
}

TEST(BypassProcessor, FadesOverFiftyMillisecondsWithoutAStep) {
    RecordingProcessor processor;
    processor.reset();
    processor.run(512);
    EXPECT_EQ(processor.outputs[0].back(), 0.5f);
    for (const bool on : {true, false}) {
        setBypass(processor, on);
        processor.run(4 * fadeFrames);
        const std::vector<float>& sound = processor.outputs[0];
        EXPECT_LT(largestStep(sound), 0.5f / static_cast<float>(fadeFrames) * 1.01f);
        EXPECT_NEAR(sound[fadeFrames / 2], 0.75f, 0.001f) << "from the sample of the switch on";
        EXPECT_EQ(sound[fadeFrames + 1], on ? 1.0f : 0.5f);
        EXPECT_EQ(processor.outputs[1][fadeFrames + 1], on ? -1.0f : -0.5f);
    }
}

TEST(BypassProcessor, HoldsTheDrySignalForTheLatencyWhenItComesBack) {
    constexpr std::int32_t latency = 1000;
    RecordingProcessor processor;
    processor.useLatency(latency);
    processor.reset();
    processor.run(8192);
    EXPECT_EQ(processor.outputs[0].back(), 0.5f);
    setBypass(processor, true);
    processor.run(8192);
    EXPECT_EQ(processor.outputs[0].back(), 1.0f) << "dry, delayed";
    setBypass(processor, false);
    processor.run(8192);
    const std::vector<float>& sound = processor.outputs[0];
    EXPECT_EQ(sound[latency - 1], 1.0f) << "still dry while the graph fills";
    EXPECT_LT(largestStep(sound), 0.5f / static_cast<float>(fadeFrames) * 1.01f);
    EXPECT_EQ(sound[static_cast<std::size_t>(latency) + 256 + fadeFrames + 1], 0.5f);
}

TEST(BypassProcessor, TurnsRoundWithoutAWaitWhileTheGraphStillRuns) {
    RecordingProcessor processor;
    processor.useLatency(1000);
    processor.reset();
    processor.run(8192);
    setBypass(processor, true);
    processor.run(1024);
    const float reached = processor.outputs[0].back();
    ASSERT_LT(reached, 0.99f);
    setBypass(processor, false);
    processor.run(8192);
    EXPECT_LT(*std::max_element(processor.outputs[0].begin(), processor.outputs[0].end()), reached + 0.001f);
    EXPECT_EQ(processor.outputs[0].back(), 0.5f);
}

TEST(BypassProcessor, AResetWhileWaitingOrFadingLeavesTheWantedState) {
    for (const std::int32_t latency : {0, 1000}) {
        RecordingProcessor processor;
        processor.useLatency(latency);
        processor.reset();
        setBypass(processor, true);
        processor.run(8192);
        setBypass(processor, false);
        processor.run(64); // waits with latency, fades without
        processor.reset();
        processor.run(8192);
        EXPECT_EQ(processor.outputs[0][static_cast<std::size_t>(latency)], 0.5f) << "latency " << latency;
        EXPECT_EQ(processor.outputs[0].back(), 0.5f) << "latency " << latency;
        setBypass(processor, true);
        processor.run(64);
        processor.reset();
        processor.run(4096);
        EXPECT_EQ(processor.outputs[0][static_cast<std::size_t>(latency)], 1.0f) << "latency " << latency;
    }
}

TEST(BypassProcessor, SilenceStopsTheGraphAfterLatencyAndTailOnly) {
    constexpr std::int32_t latency = 500;
    RecordingProcessor processor;
    processor.useLatency(latency);
    processor.tail = 2000;
    processor.reset();
    processor.run(512);
    processor.inputLevel = 0.0f;
    processor.log.clear();
    processor.run(2500 - 256, GenericPluginProcessor::inputSilent);
    EXPECT_EQ(processor.flags & GenericPluginProcessor::outputSilent, 0u);
    const std::size_t before = runs(processor);
    EXPECT_EQ(before, 9u);
    processor.run(256, GenericPluginProcessor::inputSilent);
    EXPECT_EQ(runs(processor), before + 1);
    processor.run(256, GenericPluginProcessor::inputSilent);
    EXPECT_EQ(runs(processor), before + 1) << "the tail is over";
    EXPECT_NE(processor.flags & GenericPluginProcessor::outputSilent, 0u);
    EXPECT_EQ(processor.outputs[0], std::vector<float>(256, 0.0f));
    processor.inputLevel = 1.0f;
    processor.run(256);
    EXPECT_EQ(runs(processor), before + 2);
    processor.tail = -1; // sounds for ever
    processor.inputLevel = 0.0f;
    processor.run(40000, GenericPluginProcessor::inputSilent);
    EXPECT_EQ(processor.flags & GenericPluginProcessor::outputSilent, 0u);
}

TEST(BypassProcessor, ATailEndsOnlyWhenTheGraphIsAtRest) {
    class Ringing final : public wave::Producer {
    public:
        using Producer::Producer;
        bool isAtRest() const noexcept REALTIME override { return rests; }
        void process(wave::BasicBlock<float>&, std::int32_t, std::uint32_t) noexcept REALTIME override {}
        bool rests = false;
    };
    RecordingProcessor processor;
    Ringing ringing(processor.environment());
    ringing.setResettable(true);
    processor.tail = 100;
    processor.reset();
    processor.inputLevel = 0.0f;
    processor.run(2560, GenericPluginProcessor::inputSilent);
    EXPECT_EQ(runs(processor), 10u);
    ringing.rests = true;
    processor.run(2560, GenericPluginProcessor::inputSilent);
    EXPECT_EQ(runs(processor), 11u);
}

} // namespace
