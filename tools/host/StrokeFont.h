// Letters as lines, for the labels of plots. Units: a capital is 12 high; y goes up, the base line is 0.
// Threads: any.
#pragma once

#include "tools/host/Canvas.h"

#include <string_view>
#include <vector>

inline constexpr double strokeCapHeight = 12.0;

// ASCII and the degree sign; anything else becomes a question mark.
std::vector<std::vector<Point>> strokesOf(std::string_view text);
double strokeLength(std::string_view text);
