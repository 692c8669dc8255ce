#include "tools/host/Fft.h"

#include "base/ReleaseAssert.h"

#include <bit>
#include <cstddef>
#include <numbers>
#include <utility>
#include <vector>

// Radix 2, decimation in time. The twiddles come from one table of exact sines: a running product would lose digits
// over the long transforms that low frequencies need.
void transform(std::span<std::complex<double>> data) {
    const std::size_t size = data.size();
    release_assert(std::has_single_bit(size));
    for (std::size_t i = 1, j = 0; i < size; ++i) {
        std::size_t bit = size / 2;
        for (; (j & bit) != 0; bit /= 2)
            j ^= bit;
        j ^= bit;
        if (i < j)
            std::swap(data[i], data[j]);
    }
    std::vector<std::complex<double>> twiddles(size / 2);
    for (std::size_t i = 0; i < twiddles.size(); ++i)
        twiddles[i] = std::polar(1.0, -2.0 * std::numbers::pi * static_cast<double>(i) / static_cast<double>(size));
    for (std::size_t half = 1; half < size; half *= 2) {
        const std::size_t stride = size / (2 * half);
        for (std::size_t start = 0; start < size; start += 2 * half) {
            for (std::size_t i = 0; i < half; ++i) {
                const std::complex<double> odd = data[start + half + i] * twiddles[i * stride];
                data[start + half + i] = data[start + i] - odd;
                data[start + i] += odd;
            }
        }
    }
}
