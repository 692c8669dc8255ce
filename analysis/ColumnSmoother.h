// Rounds off a curve of columns without losing its peaks.
// Threads: those of the object.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

class ColumnSmoother {
public:
    static constexpr std::int32_t maximumWidth = 16;

    void setWidth(std::int32_t columns); // 1 to maximumWidth

    // Each column becomes the largest of itself and the width - 1 behind it, and that the mean of itself and the
    // width - 1 before it, weighted by a Hann window. So a lone peak keeps its height and its place. Beyond its ends
    // the curve stays level. `out` has the length of `in`.
    void smooth(std::span<const float> in, std::span<float> out);

private:
    std::int32_t width = 0;
    std::array<float, maximumWidth> kernel{}; // its sum is 1
    std::vector<float> padded;
    std::vector<float> peaks;
};
