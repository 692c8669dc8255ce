#include "eq/LevelLaw.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace levelLaw {

namespace {

constexpr float dbPerOctave = 6.0205999f; // 20 log10(2)

// log2 of a positive normal number: the exponent, and the series of atanh for what is left of it, taken between
// sqrt(1/2) and sqrt(2). Without a branch, so that the loop around it runs on all lanes.
inline float log2Of(float value) noexcept {
    const auto bits = std::bit_cast<std::int32_t>(value);
    const std::int32_t exponent = (bits - 0x3F3504F3) >> 23; // 0x3F3504F3: sqrt(1/2)
    const float rest = std::bit_cast<float>(bits - (exponent << 23));
    const float t = (rest - 1.0f) / (rest + 1.0f);
    const float s = t * t;
    // 2 / ln(2) times 1, 1/3, 1/5, 1/7, 1/9: the next term is below 2e-8
    const float series = (((0.32059889f * s + 0.41219858f) * s + 0.57707802f) * s + 0.96179669f) * s + 2.8853901f;
    return static_cast<float>(exponent) + t * series;
}

} // namespace

void magnitudesToDb(const float* in, float* out, std::int32_t count) noexcept REALTIME {
    for (std::int32_t i = 0; i < count; ++i)
        out[i] = dbPerOctave * log2Of(std::max(std::fabs(in[i]), quietest));
}

float magnitudeToDb(float magnitude) noexcept REALTIME {
    const float size = std::fabs(magnitude);
    return size > quietest ? std::max(20.0f * std::log10(size), floorDb) : floorDb;
}

} // namespace levelLaw
