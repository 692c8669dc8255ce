// What the loaded equalizer does to a spectrum, against the designs of its bands.
#include "tests/support/EqualizerBench.h"
#include "tests/support/SectionResponse.h"

#include "eq/BandDesign.h"
#include "eq/SectionCoefficients.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <numbers>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr std::array shapes{FilterShape::bell,    FilterShape::lowShelf, FilterShape::highPass, FilterShape::highShelf,
                            FilterShape::lowPass, FilterShape::notch,    FilterShape::bandPass, FilterShape::tiltShelf,
                            FilterShape::flatTilt}; // as they are listed
constexpr int slopes = 10;

struct BandSettings {
    int shape = 0; // places in the lists
    int slope = 1;
    double hz = 1000.0;
    double q = 1.0;
    double gainDb = 0.0;
    std::string placement = "Stereo";
};

std::string bandName(int number) {
    return "Band " + std::to_string(number);
}

void apply(EqualizerBench& bench, int number, const BandSettings& band) {
    const std::string name = bandName(number);
    bench.set(name + " Shape", band.shape);
    bench.set(name + " Slope", band.slope);
    bench.set(name + " Frequency", std::log2(band.hz));
    bench.set(name + " Q", std::log(band.q) * 0.5 / std::log(40.0) + 0.5);
    bench.set(name + " Gain", band.gainDb);
    bench.set(name + " Stereo Placement", band.placement);
    bench.set(name + " Used", "Used");
}

// Of the band's digital sections, in dB.
double designedDb(const BandSettings& band, double hz, double rate) {
    AnalogFilterPrototype prototype;
    const FilterShape shape = shapes[static_cast<std::size_t>(band.shape)];
    const double perHz = 2.0 * std::numbers::pi / rate;
    designBand(shape, static_cast<FilterSlope>(band.slope), static_cast<float>(band.gainDb), static_cast<float>(band.q),
               static_cast<float>(band.hz * perHz), prototype, flatTiltHz * perHz);
    std::array<double, 8 * sectionLength> row{};
    coefficients(prototype, row, CoefficientCalculation::magnitudeMatch, SectionForm::direct);
    const std::size_t used = sectionLength * static_cast<std::size_t>(prototype.sectionCount);
    return cascadePowerDb(std::span<const double>(row).first(used), SectionForm::direct, hz * perHz);
}

// The largest difference between sound and design where the design lies above -60 dB, in dB.
double largestError(EqualizerBench& bench, const std::vector<BandSettings>& bands, double rate, const Channels& input,
                    std::size_t channel) {
    const std::vector<float> response = bench.render(input)[channel];
    double worst = 0.0;
    for (double hz = 10.0; hz < 0.95 * rate / 2.0; hz *= 1.19) {
        double expected = 0.0;
        for (const BandSettings& band : bands)
            expected += designedDb(band, hz, rate);
        if (expected > -60.0)
            worst = std::max(worst, std::fabs(magnitudeDb(response, hz, rate) - expected));
    }
    return worst;
}

Channels impulse(std::size_t length, float left, float right) {
    Channels input(2, std::vector<float>(length, 0.0f));
    input[0][0] = left;
    input[1][0] = right;
    return input;
}

} // namespace

TEST(EqualizerResponse, EveryShapeAndSlopeSoundsAsItIsDesigned) {
    for (const double rate : {44100.0, 48000.0, 96000.0, 192000.0}) {
        EqualizerBench bench(ZELK_PLUGIN_FILE, EqualizerBench::stereo, rate);
        const auto length = static_cast<std::size_t>(rate * 0.4);
        for (std::size_t shape = 0; shape < shapes.size(); ++shape) {
            // All slopes at one rate, the ends of the list at the others.
            for (int slope = 0; slope < slopes; slope += rate == 48000.0 ? 1 : slopes - 1) {
                const BandSettings band{static_cast<int>(shape), slope, 2500.0, 1.3, -7.0};
                apply(bench, 1, band);
                bench.restart();
                EXPECT_LT(largestError(bench, {band}, rate, impulse(length, 1.0f, 0.0f), 0), 0.01)
                    << "shape " << shape << ", slope " << slope << ", " << rate << " Hz";
            }
        }
    }
}

TEST(EqualizerResponse, EachPlacementHearsItsOwnSignal) {
    struct Case {
        const char* placement;
        float left, right;
        std::size_t channel;
    };
    for (const Case& one : {Case{"Left", 1, 0, 0}, Case{"Right", 0, 1, 1}, Case{"Mid", 1, 1, 1}, Case{"Side", -1, 1, 1},
                            Case{"Stereo", 0, 1, 1}}) {
        EqualizerBench bench(ZELK_PLUGIN_FILE);
        BandSettings band{0, 4, 700.0, 3.0, 11.0};
        band.placement = one.placement;
        apply(bench, 24, band);
        bench.restart();
        EXPECT_LT(largestError(bench, {band}, 48000.0, impulse(20000, one.left, one.right), one.channel), 0.01)
            << one.placement;
    }
}

TEST(EqualizerResponse, ManyBandsMultiply) {
    std::mt19937 random(std::getenv("SEED") != nullptr ? static_cast<unsigned>(std::atoi(std::getenv("SEED"))) : 7u);
    const auto between = [&random](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    for (int round = 0; round < 12; ++round) {
        EqualizerBench bench(ZELK_PLUGIN_FILE);
        std::vector<BandSettings> bands(static_cast<std::size_t>(round) * 2 + 2);
        for (std::size_t i = 0; i < bands.size(); ++i) {
            BandSettings& band = bands[i];
            band.shape = i % 6 == 5 ? static_cast<int>(random() % shapes.size()) : static_cast<int>(random() % 2) * 3;
            band.slope = static_cast<int>(random() % 9);
            band.hz = std::exp2(between(6.0, 14.0));
            band.q = std::exp2(between(-2.0, 2.0));
            band.gainDb = between(-9.0, 9.0);
            apply(bench, static_cast<int>(i) + 1, band);
        }
        bench.restart();
        EXPECT_LT(largestError(bench, bands, 48000.0, impulse(48000, 1.0f, 0.0f), 0), 0.01)
            << bands.size() << " bands, round " << round;
    }
}

TEST(EqualizerResponse, GainScaleAndTheOutputStageActOnEverything) {
    EqualizerBench bench(ZELK_PLUGIN_FILE);
    const BandSettings band{0, 1, 1000.0, 1.0, 8.0};
    apply(bench, 1, band);
    bench.set("Gain Scale", "150%");
    bench.set("Output Level", "-6 dB");
    bench.restart();
    const Channels doubled = bench.impulseResponse(0, 20000);
    EXPECT_NEAR(magnitudeDb(doubled[0], 1000.0, 48000.0), 12.0 - 6.0, 0.01);

    bench.set("Band 1 Used", "Unused");
    bench.set("Output Level", "0 dB");
    bench.set("Output Invert Phase", "Inverted");
    bench.restart();
    EXPECT_EQ(bench.impulseResponse(1, 100)[1][0], -1.0f);

    bench.set("Output Invert Phase", "Normal");
    bench.set("Output Pan", 1.0);
    bench.restart();
    Channels panned = bench.render(impulse(100, 0.5f, 0.25f));
    EXPECT_EQ(panned[0][0], 0.0f);
    EXPECT_EQ(panned[1][0], 0.25f);

    bench.set("Output Pan Mode", "Mid/Side");
    bench.restart();
    panned = bench.render(impulse(100, 0.5f, 0.25f)); // only the side is left: (right - left) / 2
    EXPECT_NEAR(panned[0][0], 0.125f, 1e-7f);
    EXPECT_NEAR(panned[1][0], -0.125f, 1e-7f);
}
