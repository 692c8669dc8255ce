#include "wave/FFTPlan.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numbers>

namespace {

// Work of a stage for each sample. Measured: what counts is the way through the memory, and the first stage turns
// its results around.
constexpr std::int32_t firstWork = 3;
constexpr std::int32_t splitWork = 2;

std::int32_t laterWork(std::int32_t radix) noexcept {
    return radix == 8 ? 3 : 2;
}

double turn(std::int64_t numerator, std::int64_t denominator) noexcept {
    return 2.0 * std::numbers::pi * static_cast<double>(numerator % denominator) / static_cast<double>(denominator);
}

// cosines[i], sines[i] of i * step / denominator turns
void writeTurns(float* cosines, float* sines, std::int32_t count, std::int64_t first, std::int64_t step,
                std::int64_t denominator) {
    for (std::int32_t index = 0; index < count; ++index) {
        const double angle = turn((first + index) * step, denominator);
        cosines[index] = static_cast<float>(std::cos(angle));
        sines[index] = static_cast<float>(std::sin(angle));
    }
}

double besselI0(double x) noexcept {
    double sum = 1.0;
    double term = 1.0;
    for (int index = 1; term > 1e-17 * sum; ++index) {
        const double factor = x / (2.0 * index);
        term *= factor * factor;
        sum += term;
    }
    return sum;
}

// Kaiser's beta for an attenuation of the side lobes in dB; the fit of Kaiser and Schafer (1980).
double kaiserBeta(double decibels) noexcept {
    if (decibels >= 60.0)
        return 0.12438 * decibels + 0.783594;
    const double above = std::max(decibels - 13.26, 0.0);
    return 0.76609 * std::pow(above, 0.4) + 0.09834 * above;
}

} // namespace

FFTPlan::FFTPlan(std::int32_t wanted, const FFTKernels& chosen)
    : windowType(this, FFTWindow::hann)
    , windowParameter(this, 60.0f)
    , kernels(chosen)
    , size(static_cast<std::int32_t>(std::bit_ceil(static_cast<std::uint32_t>(std::max(wanted, smallestSize)))))
    , scale(1.0f / static_cast<float>(size)) {
    makeStages();
    makeWindow();
}

std::span<const float> FFTPlan::getWindow() const noexcept REALTIME {
    return {window.data(), static_cast<std::size_t>(window.getCapacity())};
}

// Twiddles in one array. First stage: for each group of up to 8 butterflies and each of their outputs 1 to 7, the
// cosines of the group and then the sines. Later: for each butterfly and each output above 0, cosine and sine. Split:
// all cosines, all sines.
void FFTPlan::makeStages() {
    const std::int32_t points = size / 2;
    std::vector<std::int32_t> radices; // of the later stages
    for (std::int32_t rest = std::countr_zero(static_cast<std::uint32_t>(points)) - 3; rest > 0;) {
        const std::int32_t bits = rest >= 3 && rest != 4 ? 3 : std::min(rest, 2);
        radices.push_back(1 << bits);
        rest -= bits;
    }
    std::sort(radices.begin(), radices.end()); // wide strides to the stages with the most arrays in flight

    std::int32_t needed = points / 8 * 14 + points;
    std::int32_t butterflies = points / 8;
    for (const std::int32_t radix : radices) {
        butterflies /= radix;
        needed += 2 * (radix - 1) * butterflies;
    }
    twiddles.resize(needed);
    float* free = twiddles.data();

    const std::int32_t width = std::min(points / 8, 8);
    const Stage first{kernels.firstOfPairs, {points, points / 8, 1, free}, points / 8 / width, firstWork * size};
    for (std::int32_t group = 0; group < first.groups; ++group)
        for (std::int32_t output = 1; output < 8; ++output, free += 2 * width)
            writeTurns(free, free + width, width, group * width, output, points);
    forward.push_back(first);

    std::int32_t stride = 8;
    butterflies = points / 8;
    for (const std::int32_t radix : radices) {
        const std::int32_t spread = butterflies; // points that this stage's butterflies combine
        butterflies /= radix;
        const FFTKernels::Pass pass = radix == 8 ? kernels.middle8 : radix == 4 ? kernels.middle4 : kernels.middle2;
        forward.push_back({pass, {points, butterflies, stride, free}, points / radix / 8, laterWork(radix) * size});
        for (std::int32_t butterfly = 0; butterfly < butterflies; ++butterfly)
            for (std::int32_t output = 1; output < radix; ++output, free += 2)
                writeTurns(free, free + 1, 1, butterfly, output, spread);
        stride *= radix;
    }

    Stage split{kernels.split, {points, 0, 0, free}, points / 16, splitWork * size};
    writeTurns(free, free + points / 2, points / 2, 0, 1, size);

    inverse = forward;
    forward.push_back(split);
    inverse.front().pass = kernels.first;
    const std::int32_t lastRadix = radices.back();
    inverse.back().pass = lastRadix == 8   ? kernels.lastToPairs8
                          : lastRadix == 4 ? kernels.lastToPairs4
                                           : kernels.lastToPairs2;
    split.pass = kernels.join;
    inverse.insert(inverse.begin(), split);
    for (const Stage& stage : forward)
        totalWork += stage.work;
}

void FFTPlan::propertyChanged(AbstractProperty&) {
    makeWindow();
}

void FFTPlan::makeWindow() {
    window.resize(size + 1);
    const double beta = kaiserBeta(static_cast<double>(windowParameter.get()));
    double sum = 0.0;
    for (std::int32_t index = 0; index <= size; ++index) {
        double value = 0.0;
        if (windowType == FFTWindow::kaiser) {
            const double place = 2.0 * index / size - 1.0;
            value = besselI0(beta * std::sqrt(std::max(1.0 - place * place, 0.0))) / besselI0(beta);
        } else {
            const double mean = windowType == FFTWindow::hamming ? 0.54 : 0.5;
            value = mean - (1.0 - mean) * std::cos(turn(index, size));
        }
        window[index] = static_cast<float>(value);
        sum += value;
    }
    windowScale = static_cast<float>(2.0 / sum);
}
