#include "analysis/SpectrumPresenter.h"
#include "analysis/AnalyzerSettings.h"
#include "analysis/RealTimeFrequencyAnalyzer.h"
#include "tests/analysis/AnalysisTestObjects.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

constexpr std::size_t size = 2048;
constexpr double tick = 10.0; // ms

struct Picture {
    explicit Picture(std::uint32_t columns = 1000) {
        presenter.setSource(&spectrum);
        presenter.columnCount = columns;
        presenter.attackFactor = 0.0f;
        presenter.update(0.0);
    }

    void run(double ms) {
        for (; ms > 0.0; ms -= tick) {
            testTicks += static_cast<std::uint32_t>(tick);
            presenter.update(tick);
        }
    }
    void show(float db) {
        spectrum.show(std::pow(10.0f, db / 20.0f));
        presenter.update(tick);
    }
    float at(std::size_t column) const { return presenter.columns()[column]; }

    FixedSpectrum spectrum{size};
    SpectrumPresenter presenter{testTimer()};
};

TEST(SpectrumPresenter, FallsToATenthInTheReleaseTimeAndRisesByTheAttack) {
    for (const float seconds : analyzerReleaseSeconds) {
        Picture picture;
        picture.presenter.releaseTime = seconds;
        picture.show(0.0f);
        EXPECT_NEAR(picture.at(500), 0.0f, 0.001f) << "without attack it rises at once";
        picture.show(-100.0f);
        picture.run(1000.0 * static_cast<double>(seconds) - tick);
        EXPECT_NEAR(picture.at(500), -54.0f, 0.05f) << seconds;
    }
    Picture slow;
    slow.presenter.attackFactor = 0.1f; // 100 ms at this size and rate
    slow.spectrum.show(1.0f);
    slow.run(100.0);
    EXPECT_NEAR(slow.at(500), -6.0f, 0.02f) << "nine tenths of the rise from -60 dB";
}

TEST(SpectrumPresenter, FallsAwayOnceNoSpectrumHasComeForTheTimeoutUnlessItHolds) {
    for (const bool running : {true, false}) {
        Picture picture;
        picture.show(0.0f);
        picture.presenter.running = running;
        if (!running)
            picture.spectrum.show(0.001f); // not taken
        const std::uint32_t begin = testTicks;
        while (picture.at(500) > -0.001f && testTicks - begin < 2000) {
            ++testTicks;
            picture.presenter.update(1.0);
        }
        EXPECT_EQ(testTicks - begin, running ? 559u : 2000u);
    }
}

TEST(SpectrumPresenter, TiltTurnsThePictureAroundOneKilohertz) {
    for (const float tilt : analyzerTilts) {
        Picture picture;
        picture.presenter.tilt = tilt;
        picture.presenter.smoothing = 1;
        picture.presenter.floorDb = -90.0f;
        picture.show(-20.0f);
        const double columnsPerOctave = 999.0 / 9.965784;
        const double pivot = (9.965784 - 4.321928) * columnsPerOctave;
        for (const double octaves : {-2.0, 0.0, 1.0, 4.0})
            EXPECT_NEAR(picture.at(static_cast<std::size_t>(pivot + octaves * columnsPerOctave)),
                        -20.0 + static_cast<double>(tilt) * octaves, 0.07)
                << tilt << " dB, " << octaves;
    }
}

TEST(SpectrumPresenter, FreezeStopsWhatFallsAfter350MsAndLetsItGoWithinASecond) {
    Picture picture;
    picture.presenter.releaseTime = 0.5f;
    picture.show(0.0f);
    picture.presenter.freeze = true;
    picture.run(350.0);
    picture.show(6.0f);
    picture.show(-100.0f);
    picture.run(500.0);
    EXPECT_NEAR(picture.at(500), 6.0f, 0.001f) << "it still rises, and does not fall";
    picture.show(-100.0f);
    picture.presenter.freeze = false;
    picture.run(1000.0);
    const float before = picture.at(500);
    EXPECT_LT(before, -5.0f);
    picture.run(500.0);
    EXPECT_NEAR((picture.at(500) + 60.0f) / (before + 60.0f), 0.1f, 0.002f) << "the whole release is back";
}

TEST(SpectrumPresenter, TheFocusHoldsWhatLiesWithinTwentyColumnsOfIt) {
    Picture picture;
    picture.presenter.smoothing = 1;
    picture.presenter.focusColumn = 600;
    picture.presenter.releaseFreeze = 1.0f;
    picture.show(0.0f);
    picture.show(-120.0f);
    picture.run(500.0);
    EXPECT_EQ(picture.at(590), 0.0f);
    EXPECT_NEAR(picture.at(619), 0.0f, 0.01f);
    EXPECT_LT(picture.at(725), -10.0f);
    EXPECT_NEAR(picture.at(725), picture.at(400), 0.001f) << "out of reach";
    EXPECT_NEAR(picture.at(680) / picture.at(400), 0.36f, 0.15f) << "weight 0.64: between the two";
    picture.presenter.attackFreeze = 1.0f;
    picture.show(12.0f);
    EXPECT_EQ(picture.at(590), 0.0f);
    EXPECT_NEAR(picture.at(400), 12.0f, 0.001f);
}

TEST(SpectrumPresenter, AccumulateShowsTheMeanAndGrowsInOverHalfASecond) {
    Picture picture;
    picture.presenter.accumulate = true;
    for (int frame = 0; frame < 5; ++frame)
        picture.show(0.0f);
    EXPECT_EQ(picture.presenter.frameCount(), 5);
    EXPECT_NEAR(picture.at(500), toDb(2.0f * 2048.0f * 5.0f / 44100.0f), 0.01f);
    for (int frame = 0; frame < 45; ++frame)
        picture.show(frame % 2 == 0 ? -200.0f : 0.0f);
    EXPECT_EQ(picture.presenter.frameCount(), 27) << "silence is no part of it";
    EXPECT_NEAR(picture.at(500), 0.0f, 0.01f);
    picture.show(toDb(28.0f + 1.0f)); // the mean of 27 ones and this one is 2
    EXPECT_NEAR(picture.at(500), 6.02f, 0.01f);
    picture.run(2000.0);
    EXPECT_NEAR(picture.at(500), 6.02f, 0.01f) << "it neither moves nor falls silent by time";
    picture.presenter.reset();
    for (int frame = 0; frame < 20; ++frame)
        picture.show(-200.0f);
    EXPECT_EQ(picture.presenter.frameCount(), 0);
}

TEST(SpectrumPresenter, KeepsItsPictureThroughAChangeOfWidthSizeAndRange) {
    Picture picture;
    picture.presenter.smoothing = 1;
    std::fill_n(picture.spectrum.magnitudes.begin(), 100, 0.1f); // -20 dB up to 2153 Hz, nothing above
    ++picture.spectrum.frames;
    picture.presenter.update(tick);
    const auto atHz = [&](double hz) {
        const double low = static_cast<double>(picture.presenter.minLog2Frequency);
        const auto last = static_cast<double>(picture.presenter.columns().size() - 1);
        return picture.at(static_cast<std::size_t>((std::log2(hz) - low) * last / (14.287712 - low)));
    };
    const auto change = [&](auto act) {
        act();
        picture.presenter.update(0.0);
        EXPECT_NEAR(atHz(1900.0), -20.0f, 0.001f);
        EXPECT_NEAR(atHz(2400.0), -60.0f, 0.001f);
    };
    change([] {});
    change([&] { picture.presenter.columnCount = 617; });
    change([&] { picture.presenter.minLog2Frequency = 6.0f; });
    change([&] { picture.spectrum.resize(8192); });
    change([&] { picture.spectrum.resize(1024); });
    picture.run(1000.0); // silent: what is gone is not brought back
    picture.presenter.columnCount = 400;
    picture.presenter.update(0.0);
    EXPECT_EQ(atHz(1900.0), -60.0f);
}

TEST(SpectrumPresenter, ShowsTheFloorWhereItHasNothingToShow) {
    for (const std::uint32_t columns : {0u, 1u, 2u, 3u}) {
        Picture picture(columns);
        picture.show(0.0f);
        ASSERT_EQ(picture.presenter.columns().size(), columns);
        EXPECT_TRUE(std::ranges::all_of(picture.presenter.columns(), [](float db) { return db == -60.0f; }));
    }
    Picture broken;
    for (const float magnitude : {std::nanf(""), INFINITY, 0.0f}) {
        broken.spectrum.show(magnitude);
        broken.presenter.releaseTime = 0.0f;
        broken.presenter.update(tick);
    }
    EXPECT_EQ(broken.at(500), -60.0f) << "a broken source leaves no trace";
}

TEST(SpectrumPresenter, SmoothingKeepsTheHeightOfALonePeakAndNeverLeavesItsNeighbours) {
    struct Dip final : SpectrumPresenter::SubtractiveCurve {
        float db(std::int32_t column) const override { return column > 100 ? -12.0f : 0.0f; }
    } dip;
    std::ptrdiff_t place = 0;
    for (const std::int32_t width : {1, 2, 3, 5, 16}) {
        Picture picture(200);
        picture.presenter.smoothing = width;
        picture.spectrum.magnitudes[900] = 1.0f; // in column 195
        picture.spectrum.frames++;
        picture.presenter.update(tick);
        const auto columns = picture.presenter.columns();
        EXPECT_NEAR(std::ranges::max(columns), 0.0f, 0.001f) << width;
        if (width == 1)
            place = std::ranges::max_element(columns) - columns.begin();
        EXPECT_EQ(std::ranges::max_element(columns) - columns.begin(), place) << width;
        EXPECT_GE(std::ranges::min(columns), -60.001f) << "the cubic does not overshoot";
        EXPECT_LE(std::ranges::count_if(columns, [](float each) { return each > -59.9f; }), 2 * width + 2);
        picture.presenter.addCurve(dip);
        picture.presenter.update(0.0);
        EXPECT_NEAR(std::ranges::max(columns), -12.0f, 0.001f) << "taken out by a band";
    }
}

} // namespace
