#include "wave/LevelHandOver.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

using Package = LevelHandOver::Package;

TEST(LevelHandOver, CombinesWhatWasNotTakenWithinAGeneration) {
    LevelHandOver handOver;
    Package package{1.0f, 2, 3};
    EXPECT_FALSE(handOver.take(package));
    EXPECT_EQ(package.count, 2) << "left alone";
    handOver.put({0.25f, 10, 0}, true);
    handOver.put({0.5f, 20, 0}, true);
    handOver.put({0.125f, 30, 0}, true);
    ASSERT_TRUE(handOver.take(package));
    EXPECT_EQ(package.extreme, 0.5f);
    EXPECT_EQ(package.count, 60);
    EXPECT_FALSE(handOver.take(package));
    handOver.put({0.5f, 10, 0}, false);
    handOver.put({0.25f, 10, 0}, false);
    handOver.put({0.75f, 10, 1}, false); // a reset lies between
    ASSERT_TRUE(handOver.take(package));
    EXPECT_EQ(package.extreme, 0.75f);
    EXPECT_EQ(package.count, 10);
    EXPECT_EQ(package.generation, 1u);
}

// The n-th package says n and counts 1, so of all that was taken the sum of the counts is the largest extreme.
TEST(LevelHandOver, LosesNothingAndMixesNothingBetweenTwoThreads) {
    constexpr int packages = 300000;
    LevelHandOver handOver;
    std::thread writer([&] {
        for (int number = 1; number <= packages; ++number)
            handOver.put({static_cast<float>(number), 1, 0}, true);
    });
    std::int64_t counted = 0;
    int taken = 0;
    while (counted < packages) {
        Package package;
        if (!handOver.take(package)) {
            std::this_thread::yield();
            continue;
        }
        ++taken;
        counted += package.count;
        ASSERT_EQ(static_cast<std::int64_t>(package.extreme), counted);
    }
    writer.join();
    Package rest;
    EXPECT_FALSE(handOver.take(rest));
    EXPECT_GT(taken, 0);
}

} // namespace
