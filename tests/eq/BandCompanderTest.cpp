#include "eq/BandCompander.h"

#include "eq/LevelLaw.h"
#include "wave/Environment.h"
#include "wave/Input.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace {

constexpr float rate = 48000.0f;

class BandCompanderTest : public testing::Test {
protected:
    BandCompanderTest() {
        environment.setSampleRate(rate);
        compander.input = &input;
        compander.autoThreshold = false;
    }

    std::vector<float> run(const std::vector<float>& samples, std::int32_t block = 256) {
        std::vector<float> result;
        input.setSamples(samples);
        for (std::size_t done = 0; done < samples.size();) {
            const auto count = std::min<std::size_t>(static_cast<std::size_t>(block), samples.size() - done);
            environment.beginCycle();
            const wave::BasicBlock<float>& out = compander.pull(static_cast<std::int32_t>(count));
            for (std::size_t i = 0; i < count; ++i)
                result.push_back(out.isConstant != 0 ? out[0] : out.data()[i]);
            environment.runCycle(static_cast<std::int32_t>(count), false);
            done += count;
        }
        return result;
    }

    static std::vector<float> sine(float amplitude, float seconds, float hz = 1000.0f) {
        std::vector<float> samples(static_cast<std::size_t>(seconds * rate));
        for (std::size_t i = 0; i < samples.size(); ++i)
            samples[i] = amplitude * std::sin(2.0f * std::numbers::pi_v<float> * hz * static_cast<float>(i) / rate);
        return samples;
    }

    static std::vector<float> level(float db, float seconds) {
        return std::vector<float>(static_cast<std::size_t>(seconds * rate), std::pow(10.0f, db / 20.0f));
    }

    // Seconds until the course has covered this share of the way from its first value to its last.
    static float timeTo(float share, const std::vector<float>& course) {
        const float goal = course.front() + share * (course.back() - course.front());
        const bool up = course.back() > course.front();
        const auto found =
            std::find_if(course.begin(), course.end(), [&](float value) { return up ? value >= goal : value <= goal; });
        return static_cast<float>(found - course.begin()) / rate;
    }

    wave::Environment environment;
    wave::Input input{environment};
    BandCompander compander{environment};
};

} // namespace

TEST_F(BandCompanderTest, TheAmountFollowsTheLevelAlongTheKneeUpToTheRange) {
    compander.range = 6.0f;
    compander.threshold.parameter().setValue(-20.0f, 0.0f);
    compander.knee.parameter().setValue(12.0f, 0.0f);
    // 3 dB above the middle of a knee of 12 dB: ((6 + 3) / 12)^2 x 6
    EXPECT_NEAR(run(level(-17.0f, 4.0f)).back(), 3.375f, 0.01f);
    EXPECT_NEAR(run(level(-27.0f, 12.0f)).back(), 0.0f, 0.01f);
    EXPECT_NEAR(run(level(-5.0f, 4.0f)).back(), 6.0f, 0.01f) << "the range limits it";

    compander.range = -6.0f;
    EXPECT_NEAR(run(level(-17.0f, 12.0f)).back(), -3.375f, 0.01f) << "a negative range turns it round";

    compander.range = 20.0f;
    compander.knee.parameter().setValue(0.0f, 0.0f);
    compander.ratio.parameter().setValue(2.0f, 0.0f);
    EXPECT_NEAR(run(level(-10.0f, 12.0f)).back(), 5.0f, 0.01f) << "a ratio of 2 leaves half";
}

TEST_F(BandCompanderTest, AttackAndReleaseTakeTheTimesOfTheRegion) {
    // A region of two octaves around 100 Hz: no stretch by width, none by height.
    compander.lowEdge = 5.643856f;
    compander.highEdge = 7.643856f;
    compander.range = 10.0f;
    compander.threshold.parameter().setValue(-40.0f, 0.0f);
    run(level(-80.0f, 2.0f));
    const float b = 1.0f - (5.643856f - 4.5f) * 0.1f;
    const float d = b * b;
    const float a = ((3.6e-5f * d + 6e-5f) * 25.0f * d + (6e-5f * d + 1e-4f) * 25.0f) * 25.0f;
    const float attack = 0.59975004f * a * a + 0.00025f;
    EXPECT_NEAR(timeTo(0.9f, run(level(0.0f, 3.0f))), attack, 0.03f * attack);

    const float s = 0.094f;
    const float release = 0.62375f * s + 0.00125f + 1.1227499f * s + 0.00225f;
    const float slowest = 0.62375f * s + 0.50125f;
    const float fall = timeTo(0.9f, run(level(-80.0f, 8.0f)));
    EXPECT_GT(fall, slowest) << "the slow envelope is smoothed once more";
    EXPECT_LT(fall, slowest + release);
}

TEST_F(BandCompanderTest, ASettledBlockCostsNoEnvelopeAndStaysConstant) {
    compander.range = 10.0f;
    compander.threshold.parameter().setValue(-40.0f, 0.0f);
    const auto isConstant = [this](const std::vector<float>& samples) {
        run(samples);
        return compander.getOutput()->isConstant != 0;
    };
    EXPECT_TRUE(isConstant(std::vector<float>(256, 0.0f)));
    EXPECT_FALSE(isConstant(level(-3.0f, 0.1f)));
    EXPECT_TRUE(isConstant(level(-3.0f, 10.0f)));
}

TEST_F(BandCompanderTest, ANewRegionTakesOverItsOwnReferenceAfterHalfASecond) {
    compander.autoThreshold = true;
    compander.range = 12.0f;
    compander.threshold.parameter().setValue(-12.0f, 0.0f);
    run(sine(1.0f, 1.0f));
    compander.resynchronize();
    const std::vector<float> quiet = sine(0.1f, 2.0f);
    const std::vector<float> course = run(quiet);
    EXPECT_LT(course[static_cast<std::size_t>(0.49f * rate)], 8.0f) << "the old reference is in force";
    EXPECT_GT(course.back(), 11.5f) << "the quiet signal is its own reference now";
}

TEST(LevelLaw, BlocksAndSingleLevelsAgreeWithTheLogarithm) {
    std::vector<float> magnitudes;
    for (float db = -199.0f; db < 60.0f; db += 0.0137f)
        magnitudes.push_back(std::pow(10.0f, db / 20.0f));
    std::vector<float> levels(magnitudes.size());
    levelLaw::magnitudesToDb(magnitudes.data(), levels.data(), static_cast<std::int32_t>(levels.size()));
    for (std::size_t i = 0; i < levels.size(); ++i)
        ASSERT_NEAR(levels[i], 20.0 * std::log10(static_cast<double>(magnitudes[i])), 1e-4) << magnitudes[i];
    EXPECT_TRUE(std::is_sorted(levels.begin(), levels.end()));
    EXPECT_EQ(levelLaw::magnitudeToDb(0.0f), -180.0f);
    EXPECT_NEAR(levelLaw::magnitudeToDb(-0.5f), -6.0206f, 1e-4f);
}
