#include "tests/eq/ConvolverTestKernel.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace {

struct Sizes {
    std::int32_t length;
    std::int32_t block;
};

// The five of the linear-phase mode, the natural-phase one, a length that fills no partition, and four levels.
constexpr Sizes allSizes[] = {{4096, 1024},   {8192, 1024}, {16384, 1024}, {32768, 1024},
                              {131072, 1024}, {512, 64},    {4999, 128},   {131072, 64}};

std::function<std::int32_t()> anyBlock(unsigned seed) {
    return [random = std::mt19937(seed)]() mutable { return static_cast<std::int32_t>(1 + random() % 256); };
}

std::function<std::int32_t()> always(std::int32_t count) {
    return [count] { return count; };
}

TEST(ConvolverConfiguration, LevelsAreAsLargeAsTheKernelAsksFor) {
    const Convolver::Configuration natural(512, 64);
    EXPECT_EQ(natural.getPlan().getSize(), 64);
    EXPECT_EQ(natural.getPartitionCount(), 16);
    EXPECT_EQ(natural.getLatency(), 64);
    EXPECT_EQ(natural.getChild(), nullptr);
    const Convolver::Configuration high(16384, 1024);
    EXPECT_EQ(high.getPartitionCount(), 32);
    EXPECT_EQ(high.getChild(), nullptr);
    const Convolver::Configuration veryHigh(32768, 1024);
    EXPECT_EQ(veryHigh.getPlan().getSize(), 8192);
    EXPECT_EQ(veryHigh.getPartitionCount(), 6);
    ASSERT_NE(veryHigh.getChild(), nullptr);
    EXPECT_EQ(veryHigh.getChild()->getPlan().getSize(), 1024);
    EXPECT_EQ(veryHigh.getChild()->getPartitionCount(), 16);
    EXPECT_EQ(veryHigh.getLatency(), 1024);
    EXPECT_EQ(veryHigh.totalPartitions(), 22);
}

TEST(Convolver, EqualsTheDirectConvolutionLateByTheLatencyAtAnyLengthAndBlockSize) {
    for (const Sizes sizes : allSizes)
        for (const std::int32_t block : {1, 37, 256, 0}) {
            SCOPED_TRACE(std::to_string(sizes.length) + " at " + std::to_string(block));
            ConvolverTestBench bench(sizes.length, sizes.block);
            bench.kernel->taps = noise(static_cast<std::size_t>(sizes.length), 1);
            const float level = std::sqrt(3.0f / static_cast<float>(sizes.length)); // keeps the level of noise
            for (float& tap : bench.kernel->taps)
                tap *= level;
            bench.settle();
            bench.environment.resetAll();
            const Samples input = noise(static_cast<std::size_t>(sizes.length) + 20000, 2);
            const Samples output = bench.run(input, block > 0 ? always(block) : anyBlock(3));
            const auto latency = static_cast<std::size_t>(sizes.block);
            std::mt19937 random(4);
            for (int count = 0; count < 60; ++count) {
                // The first samples of the stream, and any.
                const std::size_t time =
                    count < 10 ? latency + static_cast<std::size_t>(count) : random() % input.size();
                EXPECT_NEAR(output[time], convolvedAt(input, bench.kernel->taps, time, latency), 1e-5) << time;
            }
        }
}

TEST(Convolver, AStreamThatBreaksLeavesNothingBehindAndIsExactFromTheLatencyOn) {
    for (const Sizes sizes : {Sizes{8192, 1024}, Sizes{32768, 1024}, Sizes{512, 64}}) {
        ConvolverTestBench bench(sizes.length, sizes.block);
        const SparseKernel taps(static_cast<std::size_t>(sizes.length), 5);
        taps.writeTo(bench.kernel->taps);
        bench.settle();
        bench.run(noise(12345, 6), anyBlock(7));
        bench.environment.resetAll();
        const Samples input = noise(60000, 8);
        const Samples output = bench.run(input, anyBlock(9));
        for (std::size_t time = 0; time < input.size(); ++time)
            ASSERT_NEAR(output[time], taps.at(input, time, static_cast<std::size_t>(sizes.block)), 1e-5) << time;
    }
}

TEST(Convolver, ANewKernelEntersByOneLinearCrossfadeOfTwoFullConvolutions) {
    for (const Sizes sizes : allSizes)
        for (const bool paced : {false, true}) {
            SCOPED_TRACE(std::to_string(sizes.length) + '/' + std::to_string(sizes.block) + (paced ? " paced" : ""));
            ConvolverTestBench bench(sizes.length, sizes.block);
            if (paced)
                bench.pace();
            const SparseKernel before(static_cast<std::size_t>(sizes.length), 10);
            const SparseKernel after(static_cast<std::size_t>(sizes.length), 11);
            before.writeTo(bench.kernel->taps);
            bench.settle();
            bench.environment.resetAll();
            const std::int32_t hop = bench.configuration.getHop();
            const auto change = static_cast<std::size_t>(sizes.length + 3 * hop + 77);
            const Samples input = noise(change + static_cast<std::size_t>(sizes.length / 4 + 6 * hop + 3000), 12);
            bool changed = false;
            const Samples output = bench.run(input, anyBlock(13), [&](std::size_t position) {
                if (position < change || changed)
                    return;
                changed = true;
                after.writeTo(bench.kernel->taps);
                bench.kernel->setDirty();
            });
            const auto latency = static_cast<std::size_t>(sizes.block);
            std::size_t begin = 0; // of the crossfade; its first sample is still the old one
            for (std::size_t time = 0; time < input.size(); ++time) {
                const double old = before.at(input, time, latency);
                if (begin == 0 && std::fabs(static_cast<double>(output[time]) - old) > 1e-5)
                    begin = time - 1;
                double share = 0.0;
                if (begin > 0)
                    share = std::min(static_cast<double>(time - begin) /
                                         bench.configuration.crossfadeSamples(bench.environment.sampleRate),
                                     1.0);
                ASSERT_NEAR(output[time], old + share * (after.at(input, time, latency) - old), 2e-5)
                    << time << ' ' << begin;
            }
            EXPECT_GT(begin, change);
        }
}

// With a kernel that only changes its gain, the output shows that gain.
TEST(Convolver, AKernelThatChangesWithoutRestNeverSteps) {
    for (const Sizes sizes : {Sizes{8192, 1024}, Sizes{32768, 1024}, Sizes{131072, 1024}, Sizes{512, 64}}) {
        SCOPED_TRACE(sizes.length);
        ConvolverTestBench bench(sizes.length, sizes.block);
        bench.pace();
        const SparseKernel taps(static_cast<std::size_t>(sizes.length), 20);
        taps.writeTo(bench.kernel->taps);
        bench.settle();
        bench.environment.resetAll();
        const std::int32_t hop = bench.configuration.getHop();
        const auto steady = static_cast<std::size_t>(sizes.length + sizes.block);
        const Samples input = noise(steady + static_cast<std::size_t>(std::max(30 * hop, 20000)), 21);
        std::mt19937 random(22);
        bench.kernel->sequences = 0;
        const Samples output = bench.run(input, anyBlock(23), [&](std::size_t) {
            bench.kernel->gain = static_cast<float>(random() % 1000) * 0.001f;
            bench.kernel->setDirty();
        });
        double gain = -1.0;
        std::size_t last = 0;
        double lowest = 1.0;
        double highest = 0.0;
        for (std::size_t time = steady; time < input.size(); ++time) {
            const double full = taps.at(input, time, static_cast<std::size_t>(sizes.block));
            if (std::fabs(full) < 0.5)
                continue;
            const double now = static_cast<double>(output[time]) / full;
            if (last > 0) {
                ASSERT_LT(std::fabs(now - gain), static_cast<double>(time - last) / hop + 4e-5) << time;
            }
            gain = now;
            last = time;
            lowest = std::min(lowest, now);
            highest = std::max(highest, now);
        }
        EXPECT_LT(lowest, 0.3);
        EXPECT_GT(highest, 0.7);
        // A kernel begins with the cycle after the one in which the last was done.
        EXPECT_GE(bench.kernel->sequences, static_cast<int>(input.size()) / (hop + 256));
    }
}

TEST(Convolver, ADynamicKernelIsReadAtEachHopAndHeardThreeHopsLater) {
    for (const Sizes sizes : {Sizes{4096, 1024}, Sizes{32768, 1024}}) {
        ConvolverTestBench bench(sizes.length, sizes.block);
        bench.pace();
        const SparseKernel taps(static_cast<std::size_t>(sizes.length), 30);
        taps.writeTo(bench.kernel->taps);
        bench.kernel->dynamic = true;
        const auto hop = static_cast<std::size_t>(bench.configuration.getHop());
        const Samples input = noise(static_cast<std::size_t>(sizes.length) + 20 * hop, 31);
        const auto gainAt = [&](std::size_t time) {
            return 0.2 + 0.8 * static_cast<double>(time) / static_cast<double>(input.size());
        };
        std::size_t cycleBegin = 0;
        bench.kernel->started = [&] {
            const std::size_t read = cycleBegin + static_cast<std::size_t>(bench.kernel->getCyclePosition());
            EXPECT_EQ(read % hop, 0u);
            bench.kernel->gain = static_cast<float>(gainAt(read));
        };
        const Samples output = bench.run(input, anyBlock(32), [&](std::size_t position) { cycleBegin = position; });
        // The gain moves evenly, so that what is interpolated between hops is the gain itself.
        for (std::size_t time = 6 * hop; time < input.size(); ++time)
            ASSERT_NEAR(output[time],
                        gainAt(time - 3 * hop) * taps.at(input, time, static_cast<std::size_t>(sizes.block)), 2e-5)
                << time;
        EXPECT_EQ(bench.kernel->sequences, static_cast<int>(input.size() / hop));
    }
}

TEST(Convolver, NoBlockHasMuchMoreWorkThanTheMeanOfThem) {
    for (const Sizes sizes : allSizes)
        for (const std::int32_t block : {64, 256})
            for (const bool changing : {false, true}) {
                SCOPED_TRACE(std::to_string(sizes.length) + '/' + std::to_string(sizes.block) + " at " +
                             std::to_string(block) + (changing ? " changing" : ""));
                ConvolverTestBench bench(sizes.length, sizes.block);
                bench.pace();
                const auto change = [&](std::size_t) {
                    if (changing)
                        bench.kernel->setDirty();
                };
                const auto hops = static_cast<std::size_t>(6 * bench.configuration.getHop());
                bench.run(Samples(hops + static_cast<std::size_t>(sizes.length)), always(block), change);
                const std::int64_t begin = bench.convolver->getWorkEverDone();
                std::int64_t before = begin;
                std::int64_t most = 0;
                const Samples input(std::max<std::size_t>(hops, 8192));
                bench.run(input, always(block), [&](std::size_t position) {
                    change(position);
                    const std::int64_t now = bench.convolver->getWorkEverDone();
                    most = std::max(most, now - before);
                    before = now;
                });
                const double mean = static_cast<double>(before - begin) * block /
                                    static_cast<double>(input.size() - static_cast<std::size_t>(block));
                EXPECT_LT(static_cast<double>(most), 1.1 * mean);
            }
}

} // namespace
