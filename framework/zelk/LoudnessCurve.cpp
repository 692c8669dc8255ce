#include "framework/zelk/LoudnessCurve.h"

#include <cmath>
#include <numbers>

namespace loudness {

namespace {

struct Corner {
    double hz;
    double weight;
};

// Falls where hearing does.
constexpr Corner corners[] = {{10.0, 0.0}, {20.0, 0.035}, {30.0, 0.2},    {60.0, 0.85},
                              {90.0, 1.0}, {6250.0, 1.0}, {18000.0, 0.4}, {20000.0, 0.0}};

double frequencyHz(std::size_t point) noexcept {
    constexpr double octavesPerPoint = 0.019464422;
    constexpr double firstLog2Hz = 4.321928; // 20 Hz
    return std::exp2(static_cast<double>(point) * octavesPerPoint + firstLog2Hz);
}

double weightAt(double hz) noexcept {
    for (std::size_t i = 1; i < std::size(corners); ++i) {
        const Corner& from = corners[i - 1];
        const Corner& to = corners[i];
        if (hz <= to.hz)
            return hz <= from.hz ? from.weight
                                 : from.weight + (to.weight - from.weight) * (hz - from.hz) / (to.hz - from.hz);
    }
    return 0.0;
}

} // namespace

Weights makeWeights() noexcept {
    std::array<double, points> raw{};
    double sum = 0.0;
    for (std::size_t i = 0; i < points; ++i)
        sum += raw[i] = weightAt(frequencyHz(i));
    Weights weights{};
    for (std::size_t i = 0; i < points; ++i)
        weights[i] = static_cast<float>(raw[i] / sum);
    return weights;
}

void fillFrequencies(Curve& curve, float sampleRate) noexcept REALTIME {
    for (std::size_t i = 0; i < points; ++i)
        curve.values[i] = static_cast<float>(2.0 * std::numbers::pi * frequencyHz(i) / static_cast<double>(sampleRate));
}

float meanGain(const Curve& squaredMagnitudes, const Weights& weights) noexcept REALTIME {
    double sum = 0.0;
    for (std::size_t i = 0; i < points; ++i)
        sum += static_cast<double>(weights[i]) * std::sqrt(static_cast<double>(squaredMagnitudes.values[i]));
    return static_cast<float>(sum);
}

} // namespace loudness
