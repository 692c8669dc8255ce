// The grid on which the loudness of a curve is weighed, from 20 Hz to 19.7 kHz in even steps of pitch.
// Threads: any; nothing allocates.
#pragma once

#include "base/Realtime.h"

#include <array>
#include <cstddef>
#include <span>

namespace loudness {

inline constexpr std::size_t points = 512;
inline constexpr float lowest = 0.031622775f; // -30 dB
inline constexpr float highest = 31.622776f;  // 30 dB

// Aligned for the four-wide evaluation of squared magnitudes.
struct alignas(32) Curve {
    std::array<float, points> values{};
};

using Weights = std::array<float, points>;

Weights makeWeights() noexcept;                                         // how much each point counts; their sum is 1
void fillFrequencies(Curve& curve, float sampleRate) noexcept REALTIME; // radians per sample

// What a signal of even loudness gains: the weighted mean of the magnitudes.
float meanGain(const Curve& squaredMagnitudes, const Weights& weights) noexcept REALTIME;

} // namespace loudness
