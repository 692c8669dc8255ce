#include "analysis/SpectrumPeakFinder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

std::vector<std::size_t> indicesIn(SpectrumPeakFinder& finder, const std::vector<float>& curve) {
    finder.setInput(curve);
    finder.find();
    std::vector<std::size_t> indices;
    for (const auto& peak : finder.peaks())
        indices.push_back(peak.index);
    return indices;
}

using Indices = std::vector<std::size_t>;

TEST(SpectrumPeakFinder, OfTwoNearPeaksTheHigherStaysAndTheMostProminentComesFirst) {
    std::vector<float> curve(1000, -60.0f);
    for (const auto& [center, height] :
         {std::pair{100, 40.0f}, {140, 50.0f}, {300, 60.0f}, {350, 55.0f}, {600, 30.0f}, {800, 45.0f}})
        for (int away = -30; away <= 30; ++away) {
            float& value = curve[static_cast<std::size_t>(center + away)];
            value = std::max(value, -60.0f + height * std::exp(-static_cast<float>(away * away) / 36.0f));
        }
    SpectrumPeakFinder finder;
    finder.maxPeaks = 3;
    finder.windowSize = 80;
    finder.threshold = -59.0f;
    EXPECT_EQ(indicesIn(finder, curve), (Indices{300, 140, 800}));
    EXPECT_NEAR(finder.peaks()[2].prominence, -15.0f + 30.0f, 4.0f) << "above half of a floor of -60 dB";
    finder.maxPeaks = 10;
    finder.threshold = -25.0f;
    EXPECT_EQ(indicesIn(finder, curve).size(), 3u) << "falls below the threshold do not count";
}

TEST(SpectrumPeakFinder, WithoutAWindowAPeakIsWhereTheMagnitudeStopsRising) {
    const std::vector<float> curve{9.0f, 1.0f, 3.0f, 3.0f, 2.0f, -4.0f, -8.0f, -7.0f, 0.0f, 5.0f, 5.0f};
    SpectrumPeakFinder finder;
    finder.absoluteValues = true;
    EXPECT_EQ(indicesIn(finder, curve), (Indices{6, 3})) << "neither the first value nor an open end";
    EXPECT_EQ(finder.peaks()[0].prominence, 7.0f) << "the magnitude behind the peak";
    finder.firstIndex = 4;
    EXPECT_EQ(indicesIn(finder, curve), (Indices{6}));
    for (const std::vector<float>& level : {std::vector<float>{}, {1.0f}, std::vector<float>(50, 3.0f)})
        EXPECT_TRUE(indicesIn(finder, level).empty());
    SpectrumPeakFinder strict;
    strict.threshold = -60.0f;
    EXPECT_EQ(indicesIn(strict, {-80.0f, -50.0f, -70.0f, -20.0f, -30.0f}), (Indices{3}))
        << "a fall through the threshold ends the rise";
}

} // namespace
