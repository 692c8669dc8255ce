#include "wave/FloatParameter.h"

#include "tests/wave/GraphTestObjects.h"
#include "wave/FloatParameterBus.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

constexpr float automatic = -1.0f;
constexpr float tenMs = 10.0f; // 441 samples

class FloatParameterTest : public testing::Test {
protected:
    std::vector<float> play(std::size_t total, std::int32_t piece = 64) {
        return render(environment, source, total, piece);
    }
    // Samples until the target stands, of an automatic ramp that begins at rest.
    std::size_t rampOf(float from, float to) {
        source.parameter.setValue(from, 0.0f);
        play(64);
        source.parameter.setValue(to, automatic);
        const std::vector<float> values = play(8192);
        std::size_t moving = 0;
        while (values[moving] != to)
            ++moving;
        return moving;
    }

    wave::Environment environment;
    FloatParameterSource source{environment, 0.0f};
    FloatParameter& parameter = source.parameter;
};

TEST_F(FloatParameterTest, ARampIsALineOfItsLengthToTheSampleHoweverTheCyclesAreCut) {
    for (const std::int32_t piece : {1, 7, 64, 256}) {
        parameter.setValue(0.0f, 0.0f);
        play(256);
        parameter.setValue(0.75f, tenMs);
        const std::vector<float> values = play(512, piece);
        for (std::size_t index = 0; index < 441; ++index)
            ASSERT_NEAR(values[index], 0.75f * static_cast<float>(index) / 441.0f, 1e-6f) << piece << ", " << index;
        EXPECT_LT(values[440], 0.75f);
        for (std::size_t index = 441; index < values.size(); ++index)
            ASSERT_EQ(values[index], 0.75f) << piece << ", " << index;
    }
}

TEST_F(FloatParameterTest, TheBlockIsConstantExactlyWhileNothingMoves) {
    play(64);
    const auto constantNow = [&](std::int32_t count) {
        runCycle(environment, count, {&source});
        return source.getOutput()->isConstant == 1;
    };
    EXPECT_TRUE(constantNow(64));
    parameter.setValue(1.0f, tenMs);
    EXPECT_FALSE(constantNow(256));
    EXPECT_FALSE(constantNow(186)) << "the last sample of the ramp and one of the target";
    EXPECT_TRUE(constantNow(1));
    EXPECT_TRUE(constantNow(256)) << "more of the block than was ever filled";
    EXPECT_EQ((*source.getOutput())[255], 1.0f);
}

TEST_F(FloatParameterTest, AnAutomaticRampIsLongForSmallChangesAndShortForLargeOnes) {
    for (const float range : {1.0f, 40.0f}) {
        parameter.setRange(0.0f, range);
        for (const float share : {0.001f, 0.05f, 0.15f, 0.3f, 0.9f}) {
            const double rest = std::max(0.3 - static_cast<double>(share), 0.0);
            const double milliseconds = 20.0 + 130.0 * (rest / 0.3) * (rest / 0.3);
            EXPECT_NEAR(static_cast<double>(rampOf(0.0f, share * range)), milliseconds * 44.1, 1.01) << share;
            EXPECT_NEAR(static_cast<double>(rampOf(share * range, 0.0f)), milliseconds * 44.1, 1.01) << share;
        }
    }
    parameter.maximumRamp = 5.0f;
    parameter.minimumRamp = 5.0f;
    EXPECT_EQ(rampOf(0.0f, 20.0f), 220u);
}

TEST_F(FloatParameterTest, ANewValueStartsFromTheValueReachedAndTheSameValueChangesNothing) {
    play(64);
    parameter.setValue(1.0f, tenMs);
    play(147);
    parameter.setValue(1.0f - 1e-7f, 0.0f);                            // the present target
    parameter.setValue(std::numeric_limits<float>::quiet_NaN(), 0.0f); // no value
    EXPECT_NEAR(play(1)[0], 147.0f / 441.0f, 1e-6f);
    parameter.setValue(0.0f, tenMs);
    const std::vector<float> values = play(442);
    EXPECT_NEAR(values[0], 148.0f / 441.0f, 1e-6f);
    EXPECT_NEAR(values[220], 148.0f / 441.0f * 221.0f / 441.0f, 1e-5f);
    EXPECT_EQ(values[441], 0.0f);
    parameter.setValue(1.0f, tenMs);
    play(10);
    parameter.jumpToTarget();
    EXPECT_EQ(play(1)[0], 1.0f);
}

TEST_F(FloatParameterTest, AResetEndsRampsAndLetsTheNextValueJump) {
    for (const bool whole : {true, false}) {
        const auto reset = [&] { whole ? environment.resetAll() : environment.jump(); };
        parameter.setValue(0.0f, 0.0f);
        play(64);
        parameter.setValue(1.0f, tenMs);
        play(100);
        reset();
        EXPECT_EQ(play(1)[0], 1.0f);
        reset();
        parameter.setValue(0.5f, automatic);
        EXPECT_EQ(play(1)[0], 0.5f);
        parameter.setValue(0.25f, automatic);
        EXPECT_NE(play(2)[1], 0.25f) << "the stream runs again";
        reset();
        parameter.setValue(0.75f, tenMs); // even a ramp that was asked for
        EXPECT_EQ(play(1)[0], 0.75f);
    }
}

TEST_F(FloatParameterTest, ARampKeepsStepWithTimeThroughCyclesThatNobodyRead) {
    play(64);
    parameter.setValue(1.0f, tenMs);
    play(100);
    for (int cycle = 0; cycle < 2; ++cycle)
        runCycle(environment, 100);
    EXPECT_NEAR(play(1)[0], 300.0f / 441.0f, 1e-6f);
    runCycle(environment, 256);
    EXPECT_EQ(play(1)[0], 1.0f);
    runCycle(environment, 1);
    parameter.setValue(0.0f, automatic);
    EXPECT_EQ(play(1)[0], 0.0f) << "nobody listened, so nothing glides";
}

TEST_F(FloatParameterTest, TheRangeLimitsTargetsAndEndsTheRampOfOneThatItClamps) {
    play(64);
    parameter.setValue(7.0f, tenMs);
    EXPECT_EQ(parameter.getTarget(), 1.0f);
    play(100);
    parameter.setRange(0.0f, 2.0f);
    EXPECT_LT(play(1)[0], 1.0f) << "a target inside ramps on";
    parameter.setRange(-1.0f, 0.5f);
    EXPECT_EQ(play(1)[0], 0.5f);
    FloatParameter large(environment, 12.0f);
    EXPECT_EQ(large.getMaximum(), 12.0f);
}

TEST(FloatParameterBus, GivesOneBlockToAllReadersFromItsOwnValueOrTheConnectedProducer) {
    wave::Environment environment;
    FloatParameterBus bus(environment, 0.5f);
    TestSource other(environment, [](std::uint64_t) { return 3.0f; });
    const auto read = [&] {
        environment.beginCycle();
        const wave::BasicBlock<float>& block = bus.read(8);
        EXPECT_EQ(&bus.read(8), &block);
        environment.runCycle(8, false);
        return block[7];
    };
    EXPECT_EQ(read(), 0.5f);
    bus.parameter().setValue(1.0f, tenMs);
    EXPECT_NEAR(read(), 0.5f + 0.5f * 7.0f / 441.0f, 1e-6f) << "a second reader does not move the ramp on";
    bus.connect(&other);
    EXPECT_EQ(read(), 3.0f);
    EXPECT_EQ(other.runs, 1);
    bus.connect(nullptr);
    bus.assign(0.25f);
    EXPECT_EQ(read(), 0.25f) << "unread meanwhile, so it jumps";
}

} // namespace
