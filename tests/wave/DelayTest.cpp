#include "wave/Delay.h"

#include "tests/wave/GraphTestObjects.h"
#include "wave/DelayFilter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

// What a line should hold: noise from position 0 on.
float past(double position) {
    const auto at = [](double whole) { return whole < 0.0 ? 0.0f : noise(static_cast<std::uint64_t>(whole)); };
    const double below = std::floor(position);
    const auto share = static_cast<float>(position - below);
    return at(below) * (1.0f - share) + at(below + 1.0) * share;
}

std::uint64_t write(wave::Delay& delay, std::uint64_t position, std::int32_t count) {
    std::vector<float> samples;
    for (std::int32_t index = 0; index < count; ++index)
        samples.push_back(noise(position + static_cast<std::uint64_t>(index)));
    delay.write(samples.data(), count);
    return position + static_cast<std::uint64_t>(count);
}

TEST(Delay, ReadsWhatWasWrittenAtEveryDelayAndZeroBefore) {
    wave::Environment environment;
    wave::Delay delay(environment, 1000);
    EXPECT_EQ(delay.getDelay(), 1000);
    std::uint64_t written = 0;
    for (const std::int32_t count : {1, 256, 3, 200, 255, 256, 256, 256, 17, 256, 256, 256}) { // past the ring's end
        written = write(delay, written, count);
        for (const std::int32_t samples : {0, 1, 63, 500, 1000}) {
            std::vector<float> out(static_cast<std::size_t>(count) + 1, -7.0f);
            delay.read(samples, out.data(), count);
            for (std::int32_t index = 0; index < count; ++index)
                ASSERT_EQ(out[static_cast<std::size_t>(index)],
                          past(static_cast<double>(written) - count + index - samples))
                    << written << ", " << samples << ", " << index;
            EXPECT_EQ(out.back(), -7.0f);
        }
    }
    std::vector<float> out(64);
    delay.read(1 << 20, out.data(), 64);
    EXPECT_EQ(out, std::vector<float>(64, 0.0f)) << "more than the line holds";
    delay.setDelayCapacity(100);
    EXPECT_EQ(delay.getDelay(), 100);
    delay.read(0, out.data(), 64);
    EXPECT_EQ(out, std::vector<float>(64, 0.0f)) << "a new line is empty";
    delay.setDelay(500);
    EXPECT_EQ(delay.getDelay(), 100);
}

TEST(Delay, ModulatedReadsLieOnTheLineBetweenTheNeighbours) {
    wave::Environment environment;
    wave::Delay delay(environment, 300);
    std::uint64_t written = 0;
    for (const std::int32_t count : {100, 256, 31, 256, 1, 255}) {
        written = write(delay, written, count);
        std::vector<float> sweeps[2];
        for (std::int32_t index = 0; index < count; ++index) {
            sweeps[0].push_back(150.0f + 149.5f * noise(written + static_cast<std::uint64_t>(index), 9));
            sweeps[1].push_back(static_cast<float>(index % 7) * 0.25f);
        }
        std::vector<float> one(sweeps[0].size());
        std::vector<float> two = sweeps[1]; // in place
        const float* const delays[] = {sweeps[0].data(), two.data()};
        float* const outs[] = {one.data(), two.data()};
        delay.readModulatedMulti(delays, outs, count);
        for (std::size_t index = 0; index < one.size(); ++index) {
            const double now = static_cast<double>(written) - count + static_cast<double>(index);
            ASSERT_NEAR(one[index], past(now - static_cast<double>(sweeps[0][index])), 2e-5f);
            ASSERT_NEAR(two[index], past(now - static_cast<double>(sweeps[1][index])), 1e-6f);
        }
    }
    const float odd[] = {std::numeric_limits<float>::quiet_NaN(), -5.0f, 1e30f};
    float out[3];
    delay.readModulated(odd, out, 3);
    EXPECT_EQ(out[0], past(static_cast<double>(written) - 3.0));
    EXPECT_EQ(out[1], past(static_cast<double>(written) - 2.0));
    EXPECT_EQ(out[2], 0.0f);
}

TEST(DelayFilter, DelaysAndBeginsWithSilenceAfterAGap) {
    wave::Environment environment;
    TestSource source(environment, [](std::uint64_t position) { return noise(position); });
    wave::DelayFilter filter(environment, 77);
    filter.input = &source;
    const auto expectDelayedSince = [&](std::uint64_t begin) {
        const std::uint64_t start = environment.position;
        const std::vector<float> sound = render(environment, filter, 400, 50);
        for (std::uint64_t index = 0; index < sound.size(); ++index)
            ASSERT_EQ(sound[index], start + index < begin + 77 ? 0.0f : noise(start + index - 77)) << index;
    };
    expectDelayedSince(0);
    expectDelayedSince(0);
    runCycle(environment, 10); // not pulled
    expectDelayedSince(environment.position);
    environment.resetAll();
    expectDelayedSince(environment.position);
}

// A head takes its input when the cycle's scheduled components run. It may have been read before that in the same
// cycle.
TEST(DelayFilter, AHeadThatTakesItsInputEarlyIsFedInEveryCycleWheneverItIsRead) {
    for (const bool readBefore : {true, false}) {
        wave::Environment environment;
        TestSource source(environment, [](std::uint64_t position) { return noise(position); });
        wave::DelayFilter filter(environment, 64);
        filter.input = &source;
        filter.takeInputEarly = 1;
        filter.setSchedule(wave::Producer::Schedule::head);
        std::vector<float> sound;
        for (int cycle = 0; cycle < 40; ++cycle) {
            environment.beginCycle();
            const bool read = readBefore && cycle % 3 != 0;
            if (read)
                filter.pull(32);
            environment.runCycle(32, false);
            sound.insert(sound.end(), filter.getOutput()->data(), filter.getOutput()->data() + 32);
        }
        EXPECT_EQ(source.runs, 40);
        for (std::size_t index = 0; index < sound.size(); ++index)
            ASSERT_EQ(sound[index], index < 64 ? 0.0f : noise(index - 64)) << readBefore << ", " << index;
    }
}

} // namespace
