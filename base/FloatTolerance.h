// When two float values count as equal, the same throughout.
// Threads: any.
#pragma once

#include <cmath>

inline constexpr float floatTolerance = 1.1920929e-7f; // 2^-23, the spacing of floats above 1

inline bool nearlyEqual(float a, float b) noexcept {
    return std::fabs(a - b) <= floatTolerance;
}

inline bool nearlyZero(float a) noexcept {
    return std::fabs(a) <= floatTolerance;
}
