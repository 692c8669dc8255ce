#include "analysis/RealTimeFrequencyAnalyzer.h"
#include "tests/analysis/AnalysisTestObjects.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

constexpr float mainWindow = 120.0f; // dB
constexpr float listWindow = 72.0f;

struct Analysis {
    explicit Analysis(SignalSource::Signal signal, std::int32_t size = 8192, float sidelobes = mainWindow)
        : source(std::move(signal)), analyzer(1, 8192, 1024, sidelobes, testTimer()) {
        analyzer.fftSize = size;
        analyzer.measurement(0).connect(&source);
    }

    std::vector<float> look(std::size_t blocks) {
        source.deliver(blocks);
        auto& measurement = analyzer.measurement(0);
        const LockedSource::Lock held(measurement);
        return {measurement.data().begin(), measurement.data().end()};
    }

    SignalSource source;
    RealTimeFrequencyAnalyzer analyzer;
};

float loudestDb(const std::vector<float>& spectrum) {
    return toDb(*std::max_element(spectrum.begin(), spectrum.end()));
}

// The transform of a continuous Kaiser window, half a bin from its middle.
float halfBinDb(float sidelobes) {
    const double beta = 0.12438 * static_cast<double>(sidelobes) + 0.783594;
    const double rest = std::sqrt(beta * beta - 0.25 * std::numbers::pi * std::numbers::pi);
    return static_cast<float>(20.0 * std::log10(std::sinh(rest) / rest / (std::sinh(beta) / beta)));
}

TEST(RealTimeFrequencyAnalyzer, AFullScaleSineReadsZeroDbOnABinAndLittleLessBetweenTwo) {
    for (const std::int32_t size : {1024, 2048, 4096, 8192})
        for (const float window : {mainWindow, listWindow})
            for (const double bin : {10.0, 0.1 * size, 0.47 * size}) {
                const double cycles = std::round(bin) / size;
                Analysis onBin(sine(cycles), size, window);
                onBin.look(64);
                const std::vector<float> spectrum = onBin.look(64);
                EXPECT_NEAR(toDb(spectrum[static_cast<std::size_t>(std::round(bin))]), 0.0f, 0.05f) << size;
                EXPECT_NEAR(loudestDb(spectrum), 0.0f, 0.05f);
                Analysis between(sine(cycles + 0.5 / size), size, window);
                between.look(64);
                EXPECT_NEAR(loudestDb(between.look(64)), halfBinDb(window), 0.005f) << size;
            }
}

TEST(RealTimeFrequencyAnalyzer, ReadsTheSameHoweverTheRingsWrapAndTheLooksFall) {
    constexpr std::int32_t size = 1024; // in rings of 8192
    Analysis analysis(sine(100.0 / size), size);
    analysis.look(8);
    std::uint32_t frames = analysis.analyzer.measurement(0).frameCounter();
    for (const std::size_t blocks : {1u, 3u, 2u, 31u, 1u, 5u, 40u, 1u, 1u, 7u}) {
        const std::vector<float> spectrum = analysis.look(blocks);
        EXPECT_NEAR(loudestDb(spectrum), 0.0f, 0.001f);
        EXPECT_LT(toDb(spectrum[120]), -110.0f) << "a window across the wrap has no seam";
        EXPECT_EQ(analysis.analyzer.measurement(0).frameCounter() - frames, blocks) << "one window each quarter";
        frames = analysis.analyzer.measurement(0).frameCounter();
    }
    const std::vector<float> held = analysis.look(0);
    EXPECT_EQ(analysis.analyzer.measurement(0).frameCounter(), frames);
    EXPECT_NEAR(loudestDb(held), 0.0f, 0.001f) << "without a new window the old spectrum stays";
}

TEST(RealTimeFrequencyAnalyzer, ShowsTheLoudestOfAllChannelsAndOfAllWindowsSinceTheLastLook) {
    constexpr double size = 1024.0;
    SignalSource mono(sine(50.0 / size));
    SignalSource wide(
        [=](std::size_t channel, std::size_t sample) {
            const bool early = sample < 8192;
            return channel == 4 && early ? sine(200.0 / size, 0.5)(channel, sample) : 0.0;
        },
        16);
    SignalSource missing([](std::size_t, std::size_t) { return 1.0; }, 0);
    RealTimeFrequencyAnalyzer analyzer(3, 1024, 512, mainWindow, testTimer());
    const auto look = [&](std::size_t blocks) {
        mono.deliver(blocks);
        wide.deliver(blocks);
        const LockedSource::Lock held(analyzer.measurement(1));
    };
    analyzer.measurement(0).connect(&mono);
    analyzer.measurement(1).connect(&wide);
    look(4);
    EXPECT_EQ(analyzer.measurement(0).frameCounter(), 0u) << "one source is not connected";
    analyzer.measurement(2).connect(&missing);
    look(64);
    EXPECT_NEAR(toDb(analyzer.measurement(0).data()[50]), 0.0f, 0.05f);
    EXPECT_NEAR(toDb(analyzer.measurement(1).data()[200]), -6.02f, 0.05f) << "only in the first half of this look";
    EXPECT_EQ(analyzer.measurement(2).data()[100], 0.0f);
    look(64);
    EXPECT_LT(toDb(analyzer.measurement(1).data()[200]), -150.0f);
}

TEST(RealTimeFrequencyAnalyzer, AudioFromBeforeALongPauseDoesNotJoinTheNew) {
    for (const auto& [pause, joins] : {std::pair{558u, true}, {559u, false}}) {
        Analysis analysis(
            [](std::size_t channel, std::size_t sample) { return sample < 8192 ? sine(0.1)(channel, sample) : 0.0; });
        analysis.look(32);
        testTicks += pause;
        EXPECT_EQ(loudestDb(analysis.look(8)) > -20.0f, joins) << pause;
    }
}

TEST(RealTimeFrequencyAnalyzer, TakesANewSizeFromTheNextLookOnAndNeverMoreThanItsRingsHold) {
    Analysis analysis(sine(100.0 / 1024.0), 1024);
    for (const auto& [wanted, size] : {std::pair{1000, 1024u}, {3000, 4096u}, {100000, 8192u}, {-5, 32u}}) {
        analysis.analyzer.fftSize = wanted;
        analysis.look(64);
        EXPECT_EQ(analysis.analyzer.measurement(0).size(), size);
        EXPECT_NEAR(loudestDb(analysis.look(64)), 0.0f, size >= 1024 ? 0.05f : 1.0f);
    }
}

} // namespace
