// Curves for EQ Match with a known difficulty, and how far a result is from them.
#pragma once

#include "eq/AnalogFilterPrototype.h"
#include "eq/BandDesign.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <random>
#include <span>
#include <vector>

namespace match {

inline constexpr std::size_t columns = 1000;
inline constexpr double lowestHz = 10.0;
inline constexpr double highestHz = 30000.0;
inline constexpr float rate = 48000.0f; // Hz

inline double hzAt(std::size_t column) {
    return lowestHz * std::pow(highestHz / lowestHz, static_cast<double>(column) / static_cast<double>(columns - 1));
}

// The same numbers with every standard library.
class Random {
public:
    explicit Random(std::uint32_t seed) : engine(seed) {}
    double uniform(double low, double high) {
        return low + (high - low) * static_cast<double>(engine()) / 4294967296.0;
    }

private:
    std::mt19937 engine;
};

inline void addResponse(std::vector<float>& curve, AnalogFilterPrototype band, double sign) {
    for (std::size_t column = 0; column < columns; ++column) {
        const double db = 10.0 * std::log10(std::max(band.squaredMagnitude(hzAt(column)), 1e-18));
        curve[column] += static_cast<float>(sign * db);
    }
}

// Bells of 3 to 12 dB, up or down, two octaves to a third wide, anywhere from 40 Hz to 14 kHz.
inline std::vector<float> bellCurve(std::uint32_t seed, int count) {
    Random random(seed);
    std::vector<float> curve(columns, 0.0f);
    for (int index = 0; index < count; ++index) {
        const double hz = 40.0 * std::pow(350.0, random.uniform(0.0, 1.0));
        const double db = random.uniform(3.0, 12.0) * (random.uniform(0.0, 1.0) < 0.5 ? -1.0 : 1.0);
        const double q = 0.7 * std::pow(6.0, random.uniform(0.0, 1.0));
        AnalogFilterPrototype band;
        designBand(FilterShape::bell, FilterSlope::db12, static_cast<float>(db), static_cast<float>(q), hz, band,
                   640.0);
        addResponse(curve, band, 1.0);
    }
    return curve;
}

// What lies beyond the ends of a random curve: its mirror image, so that it runs out level as long-term averages do, or
// more of the same.
enum class Ends { mirrored, open };

// Noise under a Gaussian window of this many octaves (one sigma), scaled to reach 12 dB.
inline std::vector<float> smoothCurve(std::uint32_t seed, double octaves, Ends ends = Ends::mirrored) {
    Random random(seed);
    const auto count = static_cast<std::ptrdiff_t>(columns);
    const double sigma = octaves * static_cast<double>(columns - 1) / std::log2(highestHz / lowestHz);
    const auto reach = static_cast<std::ptrdiff_t>(4.0 * sigma);
    std::vector<double> noise(static_cast<std::size_t>(ends == Ends::open ? count + 2 * reach : count));
    for (double& value : noise)
        value = random.uniform(-1.0, 1.0);
    const auto noiseAt = [&](std::ptrdiff_t column) {
        const std::ptrdiff_t period = 2 * count;
        std::ptrdiff_t place = column + reach;
        if (ends == Ends::mirrored) {
            place = (column % period + period) % period;
            place = std::min(place, period - 1 - place);
        }
        return noise[static_cast<std::size_t>(place)];
    };
    std::vector<float> curve;
    float largest = 0.0f;
    for (std::ptrdiff_t column = 0; column < count; ++column) {
        double sum = 0.0;
        for (std::ptrdiff_t away = -reach; away <= reach; ++away) {
            const double z = static_cast<double>(away) / sigma;
            sum += noiseAt(column + away) * std::exp(-0.5 * z * z);
        }
        curve.push_back(static_cast<float>(sum));
        largest = std::max(largest, std::fabs(curve.back()));
    }
    for (float& value : curve)
        value *= 12.0f / largest;
    return curve;
}

// What is left of a curve behind the bands, as mean square in dB^2 over the columns below the half rate.
inline double errorBehind(std::vector<float> curve, std::span<const AnalogFilterPrototype> bands) {
    for (const AnalogFilterPrototype& band : bands)
        addResponse(curve, band, -1.0);
    double sum = 0.0;
    std::size_t column = 0;
    for (; column < columns && hzAt(column) < 0.5 * static_cast<double>(rate); ++column)
        sum += static_cast<double>(curve[column]) * static_cast<double>(curve[column]);
    return sum / static_cast<double>(column);
}

} // namespace match
