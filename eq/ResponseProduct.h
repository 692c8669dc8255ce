// The product of the responses of many sections at a few frequencies, as real numbers in arrays: operators of complex
// numbers would look for infinities, and there are none.
// Threads: any, one at a time for each object.
#pragma once

#include "base/Realtime.h"

#include <array>
#include <complex>
#include <cstddef>
#include <span>

class ResponseProduct {
public:
    static constexpr std::size_t most = 32; // frequencies

    struct Factor {
        double numeratorRe, numeratorIm, denominatorRe, denominatorIm;
    };

    explicit ResponseProduct(std::size_t frequencies) noexcept REALTIME : count(frequencies) {
        numeratorRe.fill(1.0);
        denominatorRe.fill(1.0);
    }

    // law(i) is the Factor at frequency i. One whose denominator is 0 there is left out.
    template <typename Law>
    void multiply(Law law) noexcept REALTIME;

    std::complex<double> value(std::size_t i) const noexcept REALTIME;
    void store(std::span<std::complex<float>> out) const noexcept REALTIME;

private:
    using Values = std::array<double, most>;

    std::size_t count;
    Values numeratorRe, denominatorRe;
    Values numeratorIm{}, denominatorIm{};
};

template <typename Law>
inline void ResponseProduct::multiply(Law law) noexcept REALTIME {
    for (std::size_t i = 0; i < count; ++i) {
        Factor by = law(i);
        const bool absent = by.denominatorRe == 0.0 && by.denominatorIm == 0.0;
        by.numeratorRe = absent ? 1.0 : by.numeratorRe;
        by.numeratorIm = absent ? 0.0 : by.numeratorIm;
        by.denominatorRe = absent ? 1.0 : by.denominatorRe;
        const double re = numeratorRe[i] * by.numeratorRe - numeratorIm[i] * by.numeratorIm;
        numeratorIm[i] = numeratorRe[i] * by.numeratorIm + numeratorIm[i] * by.numeratorRe;
        numeratorRe[i] = re;
        const double below = denominatorRe[i] * by.denominatorRe - denominatorIm[i] * by.denominatorIm;
        denominatorIm[i] = denominatorRe[i] * by.denominatorIm + denominatorIm[i] * by.denominatorRe;
        denominatorRe[i] = below;
    }
}

inline std::complex<double> ResponseProduct::value(std::size_t i) const noexcept REALTIME {
    const double re = denominatorRe[i], im = denominatorIm[i];
    const double scale = 1.0 / (re * re + im * im);
    return {(numeratorRe[i] * re + numeratorIm[i] * im) * scale, (numeratorIm[i] * re - numeratorRe[i] * im) * scale};
}

// Each half by itself: a complex number that is narrowed as a whole takes two slow trips through memory.
inline void ResponseProduct::store(std::span<std::complex<float>> out) const noexcept REALTIME {
    for (std::size_t i = 0; i < count; ++i) {
        const std::complex<double> exact = value(i);
        out[i].real(static_cast<float>(exact.real()));
        out[i].imag(static_cast<float>(exact.imag()));
    }
}
