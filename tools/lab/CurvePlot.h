// Curves in dB over a logarithmic frequency axis, one value for each column of pixels, as a picture.
// Threads: any.
#pragma once

#include "tools/host/Canvas.h"

#include <cstddef>
#include <span>
#include <string>
#include <vector>

struct PlotCurve {
    std::string name;
    std::vector<float> columns; // dB, CurvePlot::columnCount of them
    Colour colour;
};

namespace CurvePlot {

inline constexpr std::size_t columnCount = 1440;
inline constexpr double leastHz = 10.0; // at column 0
inline constexpr double mostHz = 30000.0;

double hzOf(std::size_t column);

// The bytes of a PNG file.
std::string picture(std::span<const PlotCurve> curves, const std::string& title, const std::string& subtitle,
                    double leastDb, double mostDb);

} // namespace CurvePlot
