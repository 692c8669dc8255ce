// Numbers as users read them, whatever the locale of the process.
// Threads: any; they allocate.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

inline constexpr double silenceDb = -180.0; // levels are clamped there

// Infinities are "INF" and "-INF". A spec "*" ["+"] N letter keeps the width of the number: N decimals, one less for
// each decade. Any other spec is printf's, for one number with "f" or "d". A zero never has a sign.
std::string formatNumber(double value, std::string_view spec);

// A level in dB with its sign, "-INF" below -179.9. With plain the decimals stay; else they give way to decades.
std::string formatSigned(double value, int digits, bool plain = false);

std::string formatFrequency(double hz);

// Reads what formatNumber writes, "INF" included (in either case). Returns how many characters it took, 0: no number.
std::size_t readFormattedNumber(std::string_view text, double& value);
