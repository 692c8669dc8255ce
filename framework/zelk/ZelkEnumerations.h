// Choices of the displays, as their parameters store them.
// Threads: any.
#pragma once

#include <cstdint>

enum class AnalyzerRange : std::int32_t { db60, db90, db120 };

enum class AnalyzerResolution : std::int32_t { low, medium, high, maximum };

enum class AnalyzerSpeed : std::int32_t { verySlow, slow, medium, fast, veryFast };

enum class AnalyzerTilt : std::int32_t { db0, db1_5, db3, db4_5, db6 }; // per octave

enum class DisplayRange : std::int32_t { db3, db6, db12, db30 }; // above and below the middle

// Values of "Analyzer External Spectrum" below the instance ids.
inline constexpr std::int32_t externalSpectrumSideChain = -2;
inline constexpr std::int32_t externalSpectrumOff = -1;
