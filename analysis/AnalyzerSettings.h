// The analyzers of the interface, and what its settings mean to them.
// Threads: any.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

struct AnalyzerLayout {
    std::size_t sourceCount;
    std::int32_t largestSize; // of the FFT, and the one it starts with
    float sidelobeDb;         // of the Kaiser window
};

inline constexpr AnalyzerLayout mainAnalyzer{3, 8192, 120.0f};        // pre, post, side chain
inline constexpr AnalyzerLayout externalAnalyzer{1, 8192, 120.0f};    // the external spectrum of the main display
inline constexpr AnalyzerLayout externalListAnalyzer{1, 1024, 72.0f}; // one item of the list of external spectra

// By the index of the parameter's value.
inline constexpr std::array<std::int32_t, 4> analyzerSizes{1024, 2048, 4096, 8192};         // "Analyzer Resolution"
inline constexpr std::array<float, 5> analyzerReleaseSeconds{8.0f, 4.0f, 2.0f, 1.0f, 0.5f}; // "Analyzer Speed"
inline constexpr std::array<float, 5> analyzerTilts{0.0f, 1.5f, 3.0f, 4.5f, 6.0f};          // "Analyzer Tilt", dB/oct
