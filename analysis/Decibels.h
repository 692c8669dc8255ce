// Levels as numbers that can be drawn: never below -180 dB.
// Threads: any.
#pragma once

#include <span>

inline constexpr float lowestDb = -180.0f;

float magnitudeToDb(float magnitude) noexcept; // of its absolute value
float dbToMagnitude(float db) noexcept;

// In place, from squared magnitudes to half of 20 log10: the gains in dB. Within 0.00001 dB of the exact value, written
// so that the compiler makes vectors of it.
void squaredMagnitudesToDb(std::span<float> values) noexcept;
