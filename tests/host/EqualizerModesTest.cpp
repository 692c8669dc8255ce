// The modes with latency of the loaded equalizer: their delay, and how close they come to the analog curve.
#include "tests/support/EqualizerBench.h"

#include "eq/BandDesign.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr std::array resolutions{"Low", "Medium", "High", "Very High", "Maximum"};

void useBand(EqualizerBench& bench, const std::string& name, const std::string& placement) {
    bench.set(name + " Stereo Placement", placement);
    bench.set(name + " Used", "Used");
}

// Where the response to an impulse stands, which is where its largest sample is.
std::size_t peakOf(const std::vector<float>& samples) {
    return static_cast<std::size_t>(
        std::max_element(samples.begin(), samples.end(), [](float a, float b) { return std::fabs(a) < std::fabs(b); }) -
        samples.begin());
}

struct Curve {
    FilterShape shape;
    const char* name;
    double gainDb;
};

constexpr std::array curves{
    Curve{FilterShape::bell, "Bell", 9.0},           Curve{FilterShape::lowShelf, "Low Shelf", -7.0},
    Curve{FilterShape::highPass, "Low Cut", 0.0},    Curve{FilterShape::highShelf, "High Shelf", 6.0},
    Curve{FilterShape::lowPass, "High Cut", 0.0},    Curve{FilterShape::notch, "Notch", 0.0},
    Curve{FilterShape::bandPass, "Band Pass", 0.0},  Curve{FilterShape::tiltShelf, "Tilt Shelf", 5.0},
    Curve{FilterShape::flatTilt, "Flat Tilt", -6.0},
};

class Design {
public:
    Design(const Curve& curve, double hz, double rate) {
        const double perHz = 2.0 * std::numbers::pi / rate;
        designBand(curve.shape, FilterSlope::db24, static_cast<float>(curve.gainDb), 1.0f, hz * perHz, prototype,
                   flatTiltHz * perHz);
        radiansPerHz = perHz;
    }
    std::complex<double> at(double hz) const { return prototype.response(hz * radiansPerHz); }

private:
    AnalogFilterPrototype prototype;
    double radiansPerHz;
};

void useCurve(EqualizerBench& bench, const Curve& curve, double hz) {
    bench.set("Band 1 Shape", curve.name);
    bench.set("Band 1 Slope", "24 dB/oct");
    bench.set("Band 1 Frequency", std::log2(hz));
    bench.set("Band 1 Gain", curve.gainDb);
    bench.set("Band 1 Used", "Used");
}

struct Errors {
    double db = 0.0;
    double degrees = 0.0;
};

// The worst of magnitude and phase to 20 kHz where the curve lies above -40 dB. `delay` is taken out of the phase.
Errors errorsOf(const std::vector<float>& response, const Design& design, double delay, double rate, double fromHz) {
    Errors errors;
    for (double hz = fromHz; hz < 20000.0; hz *= 1.07) {
        const std::complex<double> wanted = design.at(hz);
        if (std::abs(wanted) < 0.01)
            continue;
        const std::complex<double> heard =
            spectrumAt(response, hz, rate) * std::polar(1.0, 2.0 * std::numbers::pi * hz * delay / rate);
        errors.db = std::max(errors.db, std::fabs(20.0 * std::log10(std::abs(heard) / std::abs(wanted))));
        errors.degrees = std::max(errors.degrees, std::fabs(std::arg(heard / wanted)) * 180.0 / std::numbers::pi);
    }
    return errors;
}

} // namespace

TEST(EqualizerModes, TheLatencyIsAsToldAndWhereTheImpulsePeaks) {
    const auto check = [](EqualizerBench& bench, std::uint32_t expected, const std::string& what) {
        bench.restart();
        EXPECT_EQ(bench.latency(), expected) << what;
        EXPECT_EQ(peakOf(bench.impulseResponse(1, expected * 2 + 4096)[1]), expected) << what;
    };
    for (const double rate : {48000.0, 96000.0, 192000.0}) {
        EqualizerBench bench(ZELK_PLUGIN_FILE, EqualizerBench::stereo, rate);
        useBand(bench, "Band 1", "Left");
        check(bench, 0, "zero latency");
        bench.set("Processing Mode", "Natural Phase");
        check(bench, 320, "natural phase, one chain");
        const auto factor = static_cast<std::uint32_t>(rate / 48000.0);
        const std::array<std::uint32_t, 5> linear{3072, 5120, 9216, 17408, 66560};
        bench.set("Processing Mode", "Linear Phase");
        for (std::size_t i = 0; i < (rate == 48000.0 ? resolutions.size() : 3); ++i) {
            bench.set("Processing Resolution", resolutions[i]);
            check(bench, linear[i] * factor, std::string("linear phase, ") + resolutions[i]);
        }
        useBand(bench, "Band 2", "Mid");
        bench.set("Processing Resolution", "Low");
        check(bench, linear[0] * factor * 2, "linear phase, two chains");
        bench.set("Processing Mode", "Natural Phase");
        check(bench, 640, "natural phase, two chains");
        bench.set("Processing Mode", "Zero Latency");
        check(bench, 0, "zero latency again");
    }
}

TEST(EqualizerModes, WithoutABandTheSoundIsOnlyLate) {
    for (const auto& [mode, resolution] : {std::pair("Natural Phase", "Low"), std::pair("Linear Phase", "Low"),
                                           std::pair("Linear Phase", "High"), std::pair("Linear Phase", "Maximum")}) {
        EqualizerBench bench(ZELK_PLUGIN_FILE);
        bench.set("Processing Mode", mode);
        bench.set("Processing Resolution", resolution);
        bench.restart();
        const std::size_t latency = bench.latency();
        Channels input{noise(1, 0.5, latency + 20000), noise(2, 0.5, latency + 20000)};
        const Channels output = bench.render(input, 509);
        for (std::size_t channel = 0; channel < 2; ++channel) {
            const std::vector<float> heard(output[channel].begin() + static_cast<std::ptrdiff_t>(latency),
                                           output[channel].end());
            input[channel].resize(heard.size());
            EXPECT_LT(peakDifferenceDb(heard, input[channel]), -120.0) << mode << ", " << resolution;
        }
    }
}

TEST(EqualizerModes, NaturalPhaseIsCloserToTheAnalogCurveThanZeroLatency) {
    constexpr double rate = 48000.0;
    constexpr double hz = 9000.0; // where digital sections bend
    for (const Curve& curve : curves) {
        Errors errors[2];
        for (const bool natural : {false, true}) {
            EqualizerBench bench(ZELK_PLUGIN_FILE);
            useCurve(bench, curve, hz);
            if (natural)
                bench.set("Processing Mode", "Natural Phase");
            bench.restart();
            const double delay = bench.latency();
            errors[natural ? 1 : 0] =
                errorsOf(bench.impulseResponse(0, 24000)[0], Design(curve, hz, rate), delay, rate, 200.0);
        }
        std::printf("%-10s zero latency %7.3f dB %7.2f degrees, natural phase %7.3f dB %7.2f degrees\n", curve.name,
                    errors[0].db, errors[0].degrees, errors[1].db, errors[1].degrees);
        EXPECT_LT(errors[1].db, errors[0].db) << curve.name;
        EXPECT_LT(errors[1].degrees, errors[0].degrees) << curve.name;
    }
}

TEST(EqualizerModes, LinearPhaseIsSymmetricAndFollowsTheAnalogMagnitude) {
    constexpr double rate = 48000.0;
    constexpr double hz = 2500.0;
    for (std::size_t resolution = 0; resolution < 4; ++resolution) {
        for (const Curve& curve : curves) {
            EqualizerBench bench(ZELK_PLUGIN_FILE);
            useCurve(bench, curve, hz);
            bench.set("Processing Mode", "Linear Phase");
            bench.set("Processing Resolution", resolutions[resolution]);
            bench.restart();
            const std::size_t latency = bench.latency();
            const std::size_t half = std::size_t{2048} << resolution; // of the kernel
            const std::vector<float> response = bench.impulseResponse(0, latency + half + 4096)[0];
            double asymmetry = 0.0;
            for (std::size_t i = 1; i < half; ++i)
                asymmetry = std::max(asymmetry, std::fabs(static_cast<double>(response[latency + i]) -
                                                          static_cast<double>(response[latency - i])));
            EXPECT_LT(asymmetry, 1e-6) << curve.name << ", " << resolutions[resolution];
            for (std::size_t i = 0; i + half < latency; ++i)
                ASSERT_LT(std::fabs(response[i]), 1e-6) << "an echo ahead of the kernel";

            const Design design(curve, hz, rate);
            double worst = 0.0;
            for (double at = 40.0; at < 20000.0; at *= 1.05) {
                const std::complex<double> wanted = design.at(at);
                if (std::abs(wanted) > 0.01)
                    worst = std::max(worst,
                                     std::fabs(20.0 * std::log10(std::abs(wanted)) - magnitudeDb(response, at, rate)));
            }
            EXPECT_LT(worst, 0.1) << curve.name << ", " << resolutions[resolution];
        }
    }
}

// A band at 0 dB on the left channel alone parts the kernels of the pair and is not heard itself.
TEST(EqualizerModes, LinearPhaseSoundsTheSameWithOneKernelForBothChannelsAndWithTwo) {
    enum class Kernels { one, two, byTurns };
    constexpr std::size_t length = 96000;
    const Channels input{noise(1, 0.5, length), noise(2, 0.5, length)};
    const auto render = [&](Kernels kernels, const char* resolution, double dynamicRange) {
        EqualizerBench bench(ZELK_PLUGIN_FILE);
        bench.set("Processing Mode", "Linear Phase");
        bench.set("Processing Resolution", resolution);
        bench.set("Band 1 Used", "Used");
        bench.set("Band 2 Gain", 6.0);
        bench.set("Band 2 Dynamic Range", dynamicRange);
        bench.set("Band 2 Used", "Used");
        bench.set("Band 3 Stereo Placement", "Left");
        bench.set("Band 3 Gain", 0.0);
        bench.set("Band 3 Used", kernels == Kernels::two ? "Used" : "Unused");
        bench.restart();
        // A dynamic kernel is always in the making: how far a change finds it depends on what it costs.
        for (std::size_t step = 1; step < 5 && dynamicRange >= 0.0; ++step) {
            bench.set("Band 1 Gain", step % 2 == 0 ? -9.0 : 9.0, step * 16000);
            if (kernels == Kernels::byTurns)
                bench.set("Band 3 Used", step % 2 == 0 ? "Unused" : "Used", step * 16000);
        }
        return bench.render(input, 200);
    };
    for (const char* const resolution : {"Low", "Very High"}) {
        const Channels one = render(Kernels::one, resolution, 0.0);
        EXPECT_EQ(one, render(Kernels::two, resolution, 0.0)) << resolution;
        EXPECT_EQ(one, render(Kernels::byTurns, resolution, 0.0)) << resolution;
    }
    EXPECT_EQ(render(Kernels::one, "Medium", -6.0), render(Kernels::two, "Medium", -6.0));
}
