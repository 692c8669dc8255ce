#include "wave/LevelMeter.h"

#include "tests/wave/GraphTestObjects.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <memory>
#include <thread>

namespace {

using Info = LevelSource::Info;

// One meter at 1000 Hz, fed in blocks of 100 samples: a tenth of a second each.
class LevelMeterTest : public testing::Test {
protected:
    static constexpr float halfDb = -6.0206f;     // 0.5
    static constexpr float quarterDb = -12.0412f; // 0.25

    LevelMeterTest() {
        environment.setSampleRate(1000.0f);
        meter.input = &source;
    }
    // Blocks of silence but for one sample of `value` in each, with a poll after every block.
    void play(float value, int blocks = 1) {
        for (int block = 0; block < blocks; ++block) {
            source.law = [value](std::uint64_t position) { return position % 100 == 37 ? value : 0.0f; };
            runCycle(environment, 100);
            milliseconds += 100;
            meter.level(Info::level);
        }
    }

    wave::Environment environment;
    TestSource source{environment};
    std::uint32_t milliseconds = 0;
    LevelMeter meter{environment, std::make_unique<ManualTimer>(milliseconds)};
};

TEST_F(LevelMeterTest, ShowsTheLargestMagnitudeOfAllBlocksSinceTheLastPollAtMostTheMaximum) {
    EXPECT_EQ(meter.level(Info::level), -90.0f);
    source.law = [](std::uint64_t position) { return position == 130 ? -0.5f : 0.1f; };
    for (int block = 0; block < 3; ++block)
        runCycle(environment, 100);
    EXPECT_NEAR(meter.level(Info::level), halfDb, 1e-3f);
    EXPECT_NEAR(meter.level(Info::peak), halfDb, 1e-3f);
    play(100.0f);
    EXPECT_EQ(meter.level(Info::level), 6.0f);
    play(0.0f);
    EXPECT_LT(meter.level(Info::level), 6.0f);
    EXPECT_EQ(meter.level(Info::extreme), 6.0f);
    EXPECT_EQ(source.runs, 5) << "a sink needs nobody to pull it";
}

TEST_F(LevelMeterTest, ThePeakHoldsThenFallsAndStepsToWhatCameWhileItHeld) {
    play(0.5f);
    play(0.35f, 3); // in the first half of the two seconds: forgotten
    play(0.0f, 11);
    play(0.25f); // in the second half: noted
    play(0.0f, 5);
    EXPECT_NEAR(meter.level(Info::level), quarterDb - 75.0f, 1e-3f) << "150 dB per second";
    EXPECT_NEAR(meter.level(Info::peak), halfDb, 1e-3f) << "exactly two seconds old";
    play(0.0f, 2);
    EXPECT_NEAR(meter.level(Info::peak), halfDb - 3.0f, 1e-3f) << "15 dB per second";
    play(0.0f, 3);
    EXPECT_NEAR(meter.level(Info::peak), quarterDb, 1e-3f);
    play(0.0f, 20);
    EXPECT_NEAR(meter.level(Info::peak), quarterDb, 1e-3f) << "held again";
    play(0.0f, 4);
    EXPECT_NEAR(meter.level(Info::peak), quarterDb - 6.0f, 1e-3f);
    meter.resetPeak();
    EXPECT_EQ(meter.level(Info::peak), -90.0f);
    EXPECT_EQ(meter.level(Info::extreme), -90.0f);
}

TEST_F(LevelMeterTest, AnOverloadStaysUntilItIsReset) {
    play(1.5f);
    play(0.0f, 60);
    environment.resetAll();
    EXPECT_NEAR(meter.level(Info::peak), 3.5218f, 1e-3f);
    EXPECT_EQ(meter.level(Info::level), -90.0f);
    meter.resetPeak();
    EXPECT_EQ(meter.level(Info::peak), -90.0f);
    meter.holdOverload = false;
    play(1.5f);
    play(0.0f, 40);
    EXPECT_NEAR(meter.level(Info::peak), 3.5218f - 30.0f, 1e-2f);
}

TEST_F(LevelMeterTest, FallsOnTheReadersClockWhenNoAudioComes) {
    play(0.5f);
    milliseconds += 100;
    EXPECT_NEAR(meter.level(Info::level), halfDb, 1e-3f) << "not stale yet";
    milliseconds += 101;
    EXPECT_NEAR(meter.level(Info::level), halfDb - 201.0f * 0.15f, 1e-2f);
    EXPECT_NEAR(meter.level(Info::level), halfDb - 201.0f * 0.15f, 1e-2f) << "no time has passed";
    milliseconds += 1;
    EXPECT_NEAR(meter.level(Info::level), halfDb - 202.0f * 0.15f, 1e-2f);
    EXPECT_NEAR(meter.level(Info::peak), halfDb, 1e-3f);
    milliseconds += 1001;
    EXPECT_EQ(meter.level(Info::level), -90.0f) << "more than a second without data";
    EXPECT_NEAR(meter.level(Info::peak), halfDb, 1e-3f) << "still held";
    play(0.25f);
    milliseconds += 60;
    EXPECT_NEAR(meter.level(Info::level), quarterDb, 1e-3f) << "fresh data ends the decay";
}

TEST_F(LevelMeterTest, GainReductionIsReadDownwardInDecibels) {
    meter.detection = LevelSource::Detection::smallest;
    meter.inputDomain = LevelMeter::LevelDomain::decibels;
    meter.maximum = 0.0f;
    meter.minimum = -30.0f;
    meter.levelFall = 40.0f;
    play(0.0f);
    EXPECT_EQ(meter.level(Info::level), 0.0f);
    play(-12.0f);
    play(-50.0f);
    EXPECT_EQ(meter.level(Info::level), -30.0f);
    play(-3.0f, 3);
    EXPECT_NEAR(meter.level(Info::level), -18.0f, 1e-3f);
    play(-3.0f, 10);
    EXPECT_NEAR(meter.level(Info::level), -3.0f, 1e-3f);
    EXPECT_EQ(meter.level(Info::peak), -30.0f);
    milliseconds += 2000;
    EXPECT_EQ(meter.level(Info::level), 0.0f);
    EXPECT_EQ(meter.getDetection(), LevelSource::Detection::smallest);
}

// Polls while blocks, resets and changes of the settings go on.
TEST(LevelMeter, NeverShowsWhatNobodyPlayedAndKeepsTheLastWord) {
    wave::Environment environment;
    TestSource source(environment, [](std::uint64_t) { return 0.5f; });
    std::uint32_t readerTime = 0;
    LevelMeter meter(environment, std::make_unique<ManualTimer>(readerTime));
    meter.input = &source;
    std::atomic<bool> stop{false};
    std::thread audio([&] {
        for (int cycle = 0; cycle < 20000; ++cycle) {
            if (cycle % 64 == 63)
                environment.resetAll();
            if (cycle % 64 == 31)
                meter.minimum = cycle % 128 == 31 ? -60.0f : -90.0f;
            runCycle(environment, 16);
        }
        stop = true;
    });
    while (!stop) {
        ++readerTime;
        for (const Info info : {Info::level, Info::peak, Info::extreme}) {
            const float shown = meter.level(info);
            ASSERT_GE(shown, -90.0f);
            ASSERT_LE(shown, -6.02f);
        }
    }
    audio.join();
    runCycle(environment, 16);
    EXPECT_NEAR(meter.level(Info::extreme), -6.0206f, 1e-3f);
}

} // namespace
