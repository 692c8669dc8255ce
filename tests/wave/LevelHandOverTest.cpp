#include "wave/LevelHandOver.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

using Package = LevelHandOver::Package;

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
