#include "analysis/Decibels.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

float magnitudeToDb(float magnitude) noexcept {
    const float size = std::fabs(magnitude);
    return size > 1e-10f ? std::max(20.0f * std::log10(size), lowestDb) : lowestDb;
}

float dbToMagnitude(float db) noexcept {
    return std::exp(db * 0.1151292546497023f); // ln(10) / 20
}

void squaredMagnitudesToDb(std::span<float> values) noexcept {
    constexpr std::int32_t rootHalf = 0x3F3504F3; // the bits of sqrt(1/2)
    constexpr float dbPerLog2 = 3.0102999566f;    // 10 log10(2)
    constexpr float dbPerLn = 4.3429448190f;      // 10 log10(e)
    for (float& value : values) {
        // The number is 2^exponent times something from sqrt(1/2) to sqrt(2).
        const float size = std::max(std::fabs(value), 1e-10f);
        const std::int32_t bits = std::bit_cast<std::int32_t>(size);
        const std::int32_t exponent = (bits - rootHalf) >> 23;
        const float x = std::bit_cast<float>(bits - exponent * (1 << 23)) - 1.0f;
        // ln(1 + x) = 2 artanh(z); five terms reach the precision of float for |z| up to 0.172.
        const float z = x / (2.0f + x);
        const float zz = z * z;
        const float ln =
            2.0f * z * (1.0f + zz * (1.0f / 3.0f + zz * (1.0f / 5.0f + zz * (1.0f / 7.0f + zz * (1.0f / 9.0f)))));
        value = std::max(static_cast<float>(exponent) * dbPerLog2 + ln * dbPerLn, 0.5f * lowestDb);
    }
}
