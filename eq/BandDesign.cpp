#include "eq/BandDesign.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr double dbToNepers = 0.1151292546497023; // ln(10) / 20
constexpr double tiltPerOctave = 0.2;             // dB an octave for each dB of a flat tilt's gain
constexpr std::array<std::int32_t, 10> orders{1, 2, 3, 4, 5, 6, 8, 12, 16, 16};

bool hasShelfQ(FilterShape shape) {
    return shape == FilterShape::lowShelf || shape == FilterShape::highShelf || shape == FilterShape::tiltShelf ||
           shape == FilterShape::flatTilt;
}

std::int32_t orderOf(FilterSlope slope) {
    return orders[static_cast<std::size_t>(slope)];
}

} // namespace

std::int32_t order(FilterShape shape, FilterSlope slope) noexcept REALTIME {
    if (isBrickwall(shape, slope))
        return 12;
    if (shape == FilterShape::flatTilt)
        return 6;
    const std::int32_t asked = orderOf(slope);
    return AnalogFilterPrototype::isBandShape(shape) ? asked + asked % 2 : asked;
}

bool isBrickwall(FilterShape shape, FilterSlope slope) noexcept REALTIME {
    return slope == FilterSlope::brickwall && (shape == FilterShape::lowPass || shape == FilterShape::highPass);
}

bool slopeIsExact(FilterShape shape, FilterSlope slope) noexcept REALTIME {
    if (shape == FilterShape::flatTilt)
        return false;
    return !AnalogFilterPrototype::isBandShape(shape) || orderOf(slope) % 2 == 0;
}

float shelfQ(FilterShape shape, float q) noexcept REALTIME {
    if (!hasShelfQ(shape))
        return q * 0.70710677f;
    // 32^x / 8 for the position x of the Q control, where Q is 40^(2 x - 1).
    constexpr double perNeper = 0.13554251; // 1 / (2 ln 40)
    const double position = std::log(static_cast<double>(q)) * perNeper + 0.5;
    return static_cast<float>(std::exp2(5.0 * position) * 0.125);
}

float plainQ(FilterShape shape, float designQ) noexcept REALTIME {
    if (!hasShelfQ(shape))
        return designQ / 0.70710677f;
    constexpr double perNeper = 0.28853902; // 1 / ln 32
    constexpr double ln40 = 3.6888794541139363;
    const double position = std::log(8.0 * static_cast<double>(designQ)) * perNeper;
    return static_cast<float>(std::exp((2.0 * position - 1.0) * ln40));
}

BandEdges bandEdges(float q, float frequency, FilterShape shape, FilterSlope slope) noexcept REALTIME {
    const float q1 = shelfQ(shape, slope == FilterSlope::db6 ? 1.0f : q);
    const float t = 1.0f / static_cast<float>(order(shape, slope));
    float x = 0.5f / q1;
    if (shape == FilterShape::bell)
        x *= 2.0f * t + 1.0f;
    else if (shape == FilterShape::lowShelf || shape == FilterShape::highShelf)
        x *= 2.0f * t;
    const float s = std::sqrt(x * x + 1.0f);
    return {(s - x) * frequency, (s + x) * frequency};
}

void designBand(FilterShape shape, FilterSlope slope, float gainDb, float q, double w0,
                AnalogFilterPrototype& prototype, double wReference) noexcept REALTIME {
    const bool brickwall = isBrickwall(shape, slope);
    const bool tilts = shape == FilterShape::flatTilt;
    double g =
        static_cast<double>(AnalogFilterPrototype::hasGain(shape) ? std::clamp(gainDb, -maxGainDb, maxGainDb) : gainDb);
    double octaves = 0.0;
    if (tilts) {
        octaves = std::log2(w0 / wReference);
        // The curve is shifted to pass 0 dB at w0; this keeps the end that moves away from 0 within the range of gains.
        if ((g > 0.0 && octaves < 0.0) || (g < 0.0 && octaves > 0.0)) {
            constexpr double range = static_cast<double>(maxGainDb);
            g *= range / std::max(std::fabs(octaves * g * tiltPerOctave) + std::fabs(g), range);
        }
    }
    const float amplitude = static_cast<float>(std::exp(g * dbToNepers));
    prototype.design(brickwall ? AnalogFilterPrototype::Kind::elliptic : AnalogFilterPrototype::Kind::butterworth,
                     shape, order(shape, slope), shelfQ(shape, brickwall ? 1.0f : q), amplitude);
    if (!tilts) {
        prototype.setFrequency(w0, 1.0 / w0);
        return;
    }
    prototype.setFrequency(wReference, 1.0 / wReference);
    prototype.scaleGain(static_cast<float>(std::exp(-(g * tiltPerOctave * octaves) * dbToNepers)));
}
