#include "analysis/SpectrumPeakFinder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

// Bells of a height in dB over a floor of -60.
std::vector<float> curveWith(std::initializer_list<std::pair<int, float>> bells) {
    std::vector<float> curve(1000, -60.0f);
    for (const auto& [center, height] : bells)
        for (int i = 0; i < 1000; ++i) {
            const auto away = static_cast<float>(i - center) / 6.0f;
            float& value = curve[static_cast<std::size_t>(i)];
            value = std::max(value, -60.0f + (height + 60.0f) * std::exp(-away * away));
        }
    return curve;
}

std::vector<std::size_t> indicesOf(const SpectrumPeakFinder& finder) {
    std::vector<std::size_t> indices;
    for (const auto& peak : finder.peaks())
        indices.push_back(peak.index);
    return indices;
}

TEST(SpectrumPeakFinder, OfTwoNearPeaksTheHigherStaysAndTheMostProminentComesFirst) {
    const std::vector<float> curve =
        curveWith({{100, -20.0f}, {140, -10.0f}, {300, 0.0f}, {350, -5.0f}, {600, -30.0f}, {800, -15.0f}});
    SpectrumPeakFinder finder;
    finder.maxPeaks = 3;
    finder.windowSize = 80;
    finder.threshold = -59.0f;
    finder.setInput(curve);
    finder.find();
    EXPECT_EQ(indicesOf(finder), (std::vector<std::size_t>{300, 140, 800}));
    // The window that ends a window behind the peak holds less of it than the one that ends at the peak or the same:
    // the larger reading counts, and it stands about half a floor above the peak itself.
    EXPECT_NEAR(finder.peaks()[2].prominence, -15.0f + 30.0f, 4.0f);
    finder.maxPeaks = 10;
    finder.threshold = -25.0f;
    finder.find();
    EXPECT_EQ(indicesOf(finder).size(), 3u) << "falls below the threshold do not count";
}

TEST(SpectrumPeakFinder, WithoutAWindowAPeakIsWhereTheMagnitudeStopsRising) {
    const std::vector<float> curve{9.0f, 1.0f, 3.0f, 3.0f, 2.0f, -4.0f, -8.0f, -7.0f, 0.0f, 5.0f, 5.0f};
    SpectrumPeakFinder finder;
    finder.absoluteValues = true;
    finder.setInput(curve);
    finder.find();
    EXPECT_EQ(indicesOf(finder), (std::vector<std::size_t>{6, 3})) << "neither the first value nor an open end";
    EXPECT_EQ(finder.peaks()[0].prominence, 7.0f) << "the magnitude behind the peak";
    finder.firstIndex = 4;
    finder.maxPeaks = 1;
    finder.find();
    EXPECT_EQ(indicesOf(finder), (std::vector<std::size_t>{6}));
    for (const std::vector<float>& level : {std::vector<float>{}, {1.0f}, std::vector<float>(50, 3.0f)}) {
        finder.setInput(level);
        finder.find();
        EXPECT_TRUE(finder.peaks().empty());
    }
}

TEST(SpectrumPeakFinder, AFallThroughTheThresholdEndsTheRise) {
    const std::vector<float> curve{-80.0f, -50.0f, -70.0f, -20.0f, -30.0f};
    SpectrumPeakFinder finder;
    finder.threshold = -60.0f;
    finder.setInput(curve);
    finder.find();
    EXPECT_EQ(indicesOf(finder), (std::vector<std::size_t>{3}));
}

} // namespace
