#include "wave/Delay.h"

#include "tests/wave/GraphTestObjects.h"
#include "wave/DelayFilter.h"

#include <gtest/gtest.h>

namespace {

// What a line should hold: noise from position 0 on.
float past(std::int64_t position) {
    return position < 0 ? 0.0f : noise(static_cast<std::uint64_t>(position));
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
                          past(static_cast<std::int64_t>(written) - count + index - samples))
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

} // namespace
