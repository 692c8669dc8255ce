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
    constexpr std::int32_t rootHalf = 0x3F3504F3;                 // the bits of sqrt(1/2)
    constexpr auto smallest = std::bit_cast<std::int32_t>(1e-9f); // half of -180 dB
    constexpr float dbPerLog2 = 3.0102999566f;                    // 10 log10(2)
    constexpr float dbPerLn = 4.3429448190f;                      // 10 log10(e)
    for (float& value : values) {
        // Compared as whole numbers, which sort like the floats they stand for: a choice between floats would keep the
        // loop from becoming one over vectors.
        const std::int32_t size = std::bit_cast<std::int32_t>(value) & 0x7FFFFFFF;
        const std::int32_t bits = size > smallest ? size : smallest;
        // The number is 2^exponent times something from sqrt(1/2) to sqrt(2).
        const std::int32_t exponent = (bits - rootHalf) >> 23;
        const float x = std::bit_cast<float>(bits - (exponent << 23)) - 1.0f;
        // ln(1 + x) - x + x^2 / 2 over x^3, in the coefficients of S. L. Moshier's Cephes library; no division.
        float rest = 7.0376836292e-2f;
        rest = rest * x - 1.1514610310e-1f;
        rest = rest * x + 1.1676998740e-1f;
        rest = rest * x - 1.2420140846e-1f;
        rest = rest * x + 1.4249322787e-1f;
        rest = rest * x - 1.6668057665e-1f;
        rest = rest * x + 2.0000714765e-1f;
        rest = rest * x - 2.4999993993e-1f;
        rest = rest * x + 3.3333331174e-1f;
        const float ln = x + x * x * (rest * x - 0.5f);
        value = static_cast<float>(exponent) * dbPerLog2 + ln * dbPerLn;
    }
}
