#include "wave/SafetyLimiter.h"

#include "tests/wave/GraphTestObjects.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr float overBySixDb = 1.0f; // with a ceiling of -6 dB

class SafetyLimiterTest : public testing::Test {
protected:
    SafetyLimiterTest() {
        environment.setSampleRate(48000.0f);
        limiter.input = &source;
        limiter.ceiling = -6.0f;
    }
    std::vector<float> gains(float level, std::size_t samples) {
        source.law = [level](std::uint64_t position) { return position % 3 == 0 ? -level : level; };
        return render(environment, limiter, samples, 100);
    }

    wave::Environment environment;
    TestSource source{environment};
    SafetyLimiter limiter{environment};
};

TEST_F(SafetyLimiterTest, BringsASteadySignalDownToTheCeilingAndLeavesASofterOneAlone) {
    for (const bool constant : {false, true}) {
        source.constant = constant;
        environment.resetAll();
        EXPECT_EQ(gains(0.5011f, 4800), std::vector<float>(4800, 1.0f)) << "just below the ceiling";
        EXPECT_NEAR(gains(overBySixDb, 24000).back(), 0.5012f, 1e-4f);
        EXPECT_NEAR(gains(4.0f * overBySixDb, 24000).back(), 0.5012f / 4.0f, 1e-4f);
        environment.resetAll();
        EXPECT_EQ(gains(0.0f, 10), std::vector<float>(10, 1.0f)) << "a new stream";
    }
}

TEST_F(SafetyLimiterTest, AttackHoldAndReleaseTakeTheirTimes) {
    gains(0.1f, 100);
    const std::vector<float> attacked = gains(overBySixDb, 48);
    constexpr float gone = 0.4988f;
    EXPECT_NEAR(attacked.back(), 1.0f - 0.9f * gone, 1e-3f) << "90 % after 1 ms";
    gains(overBySixDb, 4800);
    const std::vector<float> held = gains(0.0f, 2399);
    EXPECT_NEAR(held.back(), 0.5012f, 1e-4f) << "50 ms";
    const std::vector<float> released = gains(0.0f, 12000);
    EXPECT_GT(released[2], 0.5012f + 2e-5f);
    EXPECT_NEAR(released.back(), 1.0f - 0.1f * gone, 1e-3f) << "90 % after 250 ms";

    environment.resetAll();
    limiter.release = 100.0f;
    limiter.hold = 10.0f;
    gains(overBySixDb, 4800);
    EXPECT_NEAR(gains(0.0f, 480 + 4800).back(), 1.0f - 0.1f * gone, 1e-3f) << "its own settings";
}

TEST(PeakHold, IsTheLargestValueOfTheWindow) {
    constexpr std::size_t window = 37;
    wave::Environment environment;
    environment.setSampleRate(1000.0f);
    // Noise, falling slopes, and now and then whole blocks of one value.
    TestSource source(environment, [&](std::uint64_t position) {
        return source.constant ? noise(position / 500, 7) : noise(position) - static_cast<float>(position % 90) / 90.0f;
    });
    source.whenRun = [&] { source.constant = environment.position / 500 % 2 == 1; };
    PeakHold hold(environment);
    hold.input = &source;
    hold.holdTime.assign(static_cast<float>(window));
    std::vector<float> given;
    while (given.size() < 5000) {
        const std::int32_t count = given.size() % 3 == 0 ? 20 : 10;
        environment.beginCycle();
        const wave::BasicBlock<float>& held = hold.pull(count);
        for (std::int32_t index = 0; index < count; ++index) {
            given.push_back((*source.getOutput())[index]);
            const std::size_t first = given.size() > window ? given.size() - window : 0;
            const auto oldest = given.begin() + static_cast<std::ptrdiff_t>(first);
            ASSERT_EQ(held[index], *std::max_element(oldest, given.end())) << given.size();
        }
        environment.runCycle(count, false);
    }
}

TEST(Capacitor, GoesNinetyPercentOfTheWayInItsTimesAndFollowsAtOnceWithoutAny) {
    wave::Environment environment;
    environment.setSampleRate(10000.0f);
    float level = 1.0f;
    TestSource source(environment, [&](std::uint64_t) { return level; });
    Capacitor capacitor(environment);
    capacitor.input = &source;
    capacitor.attack.assign(0.01f);
    capacitor.release.assign(0.05f);
    EXPECT_NEAR(render(environment, capacitor, 100, 7).back(), 0.9f, 1e-6f);
    render(environment, capacitor, 2000, 256);
    level = -1.0f;
    EXPECT_NEAR(render(environment, capacitor, 500, 256).back(), 1.0f - 2.0f * 0.9f, 1e-5f);
    environment.resetAll();
    capacitor.release.assign(0.0f);
    EXPECT_EQ(render(environment, capacitor, 1, 1).back(), -1.0f);

    // It arrives where a constant stands, and then costs nothing.
    source.constant = true;
    level = 1.0f;
    const std::vector<float> settling = render(environment, capacitor, 5000, 100);
    EXPECT_EQ(settling.back(), 1.0f);
    EXPECT_EQ(capacitor.getOutput()->isConstant, 1u);
}

} // namespace
