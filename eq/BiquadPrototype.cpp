#include "eq/BiquadPrototype.h"

#include <algorithm>
#include <utility>

void BiquadPrototype::setFrequency(double w0, double invW0) noexcept REALTIME {
    frequency = w0;
    invFrequency = invW0;
    polyValid = false;
}

void BiquadPrototype::scale(double factor) noexcept REALTIME {
    b2 *= factor;
    b1 *= factor;
    b0 *= factor;
    polyValid = false;
}

std::complex<double> BiquadPrototype::response(double w) const noexcept REALTIME {
    const double v = w * invFrequency;
    const double numeratorRe = b0 - v * v * b2;
    const double numeratorIm = v * b1;
    const double denominatorRe = a0 - v * v * a2;
    const double denominatorIm = v * a1;
    const double scale = 1.0 / (denominatorRe * denominatorRe + denominatorIm * denominatorIm);
    return {(numeratorRe * denominatorRe + numeratorIm * denominatorIm) * scale,
            (numeratorIm * denominatorRe - numeratorRe * denominatorIm) * scale};
}

void BiquadPrototype::squaredMagnitudes(const float* w, float* out, std::size_t count) const noexcept REALTIME {
    std::fill_n(out, wholeGroups(count), 1.0f);
    multiplySquaredMagnitudes(w, out, count);
}

void BiquadPrototype::multiplySquaredMagnitudes(const float* __restrict w, float* __restrict inOut,
                                                std::size_t count) const noexcept REALTIME {
    // (a0 - a2 x)^2 + a1^2 x, not the expanded polynomial: near a sharp pole that one cancels down to the last bits of
    // a float, this one does not.
    const float toX = static_cast<float>(invFrequency * invFrequency);
    const float c2 = static_cast<float>(b2), c1 = static_cast<float>(b1 * b1), c0 = static_cast<float>(b0);
    const float d2 = static_cast<float>(a2), d1 = static_cast<float>(a1 * a1), d0 = static_cast<float>(a0);
    const std::size_t padded = wholeGroups(count);
    for (std::size_t i = 0; i < padded; ++i) {
        const float x = w[i] * w[i] * toX;
        const float above = c0 - c2 * x;
        const float below = d0 - d2 * x;
        const float product = inOut[i] * ((above * above + c1 * x) / (below * below + d1 * x));
        inOut[i] = product > 0.0f ? product : 0.0f;
    }
}

void BiquadPrototype::phases(const float* w, float* out, std::size_t count) const noexcept REALTIME {
    std::fill_n(out, wholeGroups(count), 0.0f);
    addPhases(w, out, count);
    wrapPhases(out, wholeGroups(count));
}

void BiquadPrototype::addPhases(const float* w, float* inOut, std::size_t count) const noexcept REALTIME {
    const std::size_t padded = wholeGroups(count);
    for (std::size_t i = 0; i < padded; ++i) {
        const std::complex<double> value = response(static_cast<double>(w[i]));
        inOut[i] += static_cast<float>(std::atan2(value.imag(), value.real()));
    }
}

void BiquadPrototype::renewPolynomials() noexcept REALTIME {
    const double W = frequency * frequency;
    if (isFirstOrder()) {
        N4 = 0.0;
        N2 = b1 * b1;
        N0 = b0 * b0 * W;
        D4 = 0.0;
        D2 = a1 * a1;
        D0 = a0 * a0 * W;
    } else {
        N4 = b2 * b2;
        N2 = (b1 * b1 - 2.0 * b2 * b0) * W;
        N0 = b0 * W * (b0 * W);
        D4 = a2 * a2;
        D2 = (a1 * a1 - 2.0 * a2 * a0) * W;
        D0 = a0 * W * (a0 * W);
    }
    polyValid = true;
}

BiquadPrototype::Extrema BiquadPrototype::findExtrema(double tolerance) noexcept REALTIME {
    if (isFirstOrder())
        return {};
    if (!polyValid)
        renewPolynomials();
    // The derivative of N(x) / D(x) is zero where A x^2 + B x + C is.
    double A = N4 * D2 - N2 * D4;
    double B = 2.0 * (D0 * N4 - N0 * D4);
    const double C = D0 * N2 - N0 * D2;
    const bool rootIsFrequency = A == 0.0; // then B x + C = 0 is solved as B w^2 + C = 0
    if (rootIsFrequency)
        A = std::exchange(B, 0.0);
    const double discriminant = B * B - 4.0 * A * C;
    if (discriminant < 0.0 || A == 0.0)
        return {};

    // Of the two solutions one is found without cancellation, the other from their product.
    const double sum = -0.5 * (B + std::copysign(std::sqrt(discriminant), B));
    Extrema found;
    for (const double solution : {sum / A, C / sum}) {
        if (!(solution > 0.0))
            continue;
        const double x = rootIsFrequency ? solution * solution : solution;
        const double N = (N4 * x + N2) * x + N0;
        const double D = (D4 * x + D2) * x + D0;
        // N / D against N0 / D0 and N4 / D4, multiplied out: all of D is positive.
        if (!(N * D0 * tolerance < std::fabs(N * D0 - N0 * D) && N * D4 * tolerance < std::fabs(N * D4 - N4 * D)))
            continue;
        (found.count++ == 0 ? found.first : found.second) = rootIsFrequency ? solution : std::sqrt(x);
    }
    if (found.count == 2 && found.first > found.second)
        std::swap(found.first, found.second);
    return found;
}
