// Magnitudes as levels in dB, whole blocks at a time.
// Threads: any; nothing allocates.
#pragma once

#include "base/Realtime.h"

#include <cstdint>

namespace levelLaw {

inline constexpr float quietest = 1e-10f; // linear: what is below counts as this
inline constexpr float floorDb = -180.0f; // of single levels

// Within 0.0001 dB of 20 log10, and monotonic. in and out may be the same; they are padded to groups of 8.
void magnitudesToDb(const float* in, float* out, std::int32_t count) noexcept REALTIME;

float magnitudeToDb(float magnitude) noexcept REALTIME; // at least floorDb

} // namespace levelLaw
