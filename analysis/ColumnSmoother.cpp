#include "analysis/ColumnSmoother.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

void ColumnSmoother::setWidth(std::int32_t columns) {
    if (columns == width)
        return;
    width = columns;
    kernel.fill(0.0f);
    // The window has two points more, both 0.
    const double step = 2.0 * std::numbers::pi / static_cast<double>(width + 1);
    for (std::int32_t index = 0; index < width; ++index)
        kernel[static_cast<std::size_t>(index)] = static_cast<float>(0.5 - 0.5 * std::cos(step * (index + 1)));
    const float sum = std::accumulate(kernel.begin(), kernel.end(), 0.0f);
    for (float& weight : kernel)
        weight /= sum;
}

void ColumnSmoother::smooth(std::span<const float> in, std::span<float> out) {
    const std::size_t count = in.size();
    if (count == 0)
        return;
    const auto reach = static_cast<std::size_t>(width - 1);
    padded.resize(count + reach);
    std::copy(in.begin(), in.end(), padded.begin());
    std::fill(padded.begin() + static_cast<std::ptrdiff_t>(count), padded.end(), in.back());

    peaks.resize(count + reach);
    float* const largest = peaks.data() + reach;
    std::copy(in.begin(), in.end(), largest);
    for (std::size_t distance = 1; distance <= reach; ++distance) {
        const float* __restrict later = padded.data() + distance;
        float* __restrict best = largest;
        for (std::size_t column = 0; column < count; ++column)
            best[column] = later[column] > best[column] ? later[column] : best[column];
    }
    std::fill(peaks.data(), largest, *largest);

    std::fill(out.begin(), out.end(), 0.0f);
    for (std::size_t distance = 0; distance <= reach; ++distance) {
        const float weight = kernel[distance];
        const float* __restrict earlier = largest - distance;
        float* __restrict sum = out.data();
        for (std::size_t column = 0; column < count; ++column)
            sum[column] += weight * earlier[column];
    }
}
