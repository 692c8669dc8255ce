#include "eq/FollowerKernels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace {

constexpr float guard = 12345.0f;

double stepOf(double milliseconds) {
    return milliseconds > 0.0 ? -std::expm1(-2.3025851 / (milliseconds * 48.0)) : 1.0;
}

// What envelopes take in: steps, noise that turns at every sample, swings that last, and nothing.
std::vector<float> course(std::size_t length, std::mt19937& random) {
    std::uniform_real_distribution<float> amount(0.0f, 24.0f);
    std::vector<float> samples(length + 2, guard);
    const auto kind = random() % 4;
    float held = amount(random);
    for (std::size_t i = 0; i < length; ++i) {
        if (random() % 32 == 0)
            held = amount(random);
        const float swing = 12.0f + 12.0f * std::sin(0.01f * static_cast<float>(i) + held);
        samples[i + 1] = kind == 0 ? held : kind == 1 ? amount(random) : kind == 2 ? swing : 0.0f;
    }
    return samples;
}

TEST(FollowerKernels, TheWideOneEqualsThePlainOneAtEveryLengthAndInEveryDirection) {
    if (wideFollowerKernel() == nullptr)
        GTEST_SKIP() << "this processor has no wide kernel";
    std::mt19937 random(5);
    std::vector<std::size_t> lengths{31, 64, 256};
    for (std::size_t i = 0; i <= 17; ++i)
        lengths.push_back(i);
    for (const FollowerSteps& steps :
         {FollowerSteps{1.0, stepOf(10000.0)}, FollowerSteps{1.0, stepOf(20.0)}, FollowerSteps{1.0, 1.0},
          FollowerSteps{stepOf(120.0), stepOf(560.0)}, FollowerSteps{stepOf(1000.0), stepOf(3.0)},
          FollowerSteps{stepOf(0.25), stepOf(2.0)}, FollowerSteps{stepOf(5.0), 1.0}}) {
        double plain = 6.0, wide = 6.0;
        for (int round = 0; round < 20; ++round)
            for (const std::size_t length : lengths) {
                const std::vector<float> in = course(length, random);
                std::vector<float> expected = in, out = in;
                const float* const from = round % 2 == 0 ? out.data() + 1 : in.data() + 1; // in place, or apart
                const auto count = static_cast<std::int32_t>(length);
                plain = plainFollowerKernel()(steps, plain, in.data() + 1, expected.data() + 1, count);
                wide = wideFollowerKernel()(steps, wide, from, out.data() + 1, count);
                ASSERT_NEAR(plain, wide, 1e-9) << length;
                ASSERT_EQ(out.front(), guard);
                ASSERT_EQ(out.back(), guard);
                for (std::size_t i = 0; i < out.size(); ++i)
                    ASSERT_NEAR(out[i], expected[i], 2e-6f) << i << " of " << length; // the last bit at 24 dB
            }
    }
}

// What ends a run of blocks is that an envelope stands exactly where its input is.
TEST(FollowerKernels, TheWideOneArrivesAtItsInputAndStaysThere) {
    if (wideFollowerKernel() == nullptr)
        GTEST_SKIP() << "this processor has no wide kernel";
    const std::vector<float> in(48000, 11.7f);
    std::vector<float> out(in.size());
    for (const double start : {0.0, 30.0})
        for (const FollowerSteps& steps :
             {FollowerSteps{1.0, stepOf(35.0)}, FollowerSteps{stepOf(120.0), stepOf(100.0)}}) {
            const double end = wideFollowerKernel()(steps, start, in.data(), out.data(), 48000);
            EXPECT_NEAR(end, static_cast<double>(in[0]), 1e-7);
            EXPECT_EQ(out.back(), in[0]);
            EXPECT_TRUE(start > 0.0 ? std::is_sorted(out.rbegin(), out.rend())
                                    : std::is_sorted(out.begin(), out.end()));
        }
}

} // namespace
