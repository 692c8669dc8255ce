#include "wave/BlockMath.h"

#include "tests/wave/GraphTestObjects.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace {

constexpr std::int32_t lengths[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 31, 64, 255, 511};
constexpr float guard = 12345.0f;

std::vector<float> noises(std::int32_t count, std::uint32_t seed) {
    std::vector<float> samples(static_cast<std::size_t>(count));
    for (std::size_t index = 0; index < samples.size(); ++index)
        samples[index] = noise(index, seed);
    return samples;
}

TEST(BlockMath, LoopsReachEverySampleAndNothingBehindTheGroupOfTheLast) {
    for (const std::int32_t count : lengths)
        for (const std::size_t offset : {0u, 1u, 3u}) { // aligned and not
            const auto room = static_cast<std::size_t>((count + 7) / 8 * 8);
            const std::vector<float> a = noises(600, 1);
            const std::vector<float> b = noises(600, 2);
            std::vector<float> out(offset + room + 8, guard);
            wave::mapBlock(
                out.data() + offset, count, [](float x, float y) { return x * y; }, a.data(), b.data());
            wave::updateBlock(
                out.data() + offset, count, [](float sum, float x) { return sum + x; }, b.data());
            for (std::size_t index = 0; index < static_cast<std::size_t>(count); ++index)
                ASSERT_EQ(out[offset + index], a[index] * b[index] + b[index]) << count << ", " << index;
            EXPECT_EQ(std::count(out.begin(), out.begin() + static_cast<std::ptrdiff_t>(offset), guard),
                      static_cast<std::ptrdiff_t>(offset));
            EXPECT_EQ(std::count(out.end() - 8, out.end(), guard), 8) << count;
        }
}

TEST(BlockMath, TheExtremeIsThatOfTheValidSamplesWhereverItStands) {
    constexpr float huge = 1e9f;
    for (const std::int32_t count : lengths)
        for (std::int32_t place = 0; place < count; ++place) {
            std::vector<float> samples = noises(count + 8, 3);
            std::fill(samples.end() - 8, samples.end(), huge); // behind the block: no business of ours
            samples[static_cast<std::size_t>(place)] = -5.0f;
            EXPECT_EQ((wave::extremeOf<true, true>(samples.data(), count, 0.0f)), 5.0f);
            EXPECT_EQ((wave::extremeOf<false, false>(samples.data(), count, 0.0f)), -5.0f);
            samples[static_cast<std::size_t>(place)] = 5.0f;
            EXPECT_EQ((wave::extremeOf<true, false>(samples.data(), count, 0.0f)), 5.0f);
            EXPECT_EQ((wave::extremeOf<true, false>(samples.data(), count, 6.0f)), 6.0f) << "the start counts";
            samples[static_cast<std::size_t>(place)] = std::numeric_limits<float>::quiet_NaN();
            EXPECT_LE((wave::extremeOf<true, true>(samples.data(), count, 0.0f)), 1.0f);
            EXPECT_LE((wave::extremeOf<false, true>(samples.data(), count, 0.5f)), 0.5f);
        }
}

} // namespace
