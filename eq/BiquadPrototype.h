// One analog section of second or first order: H(s) = (b2 s^2 + b1 s + b0) / (a2 s^2 + a1 s + a0), s normalised to the
// section's frequency.
// Threads: any, one at a time for each object.
#pragma once

#include "eq/AnalogFilterPrototypeBase.h"

#include <cmath>
#include <cstdint>

class BiquadPrototype final : public AnalogFilterPrototypeBase {
public:
    // Coefficients at or below this are zero, for the question whether a section is of first order.
    static constexpr double epsilon = 1.1920928955078125e-7; // 2^-23

    // The first count of these are frequencies of extrema of the magnitude, ascending.
    struct Extrema {
        int count = 0;
        double first = 0.0;
        double second = 0.0;
    };

    void setFrequency(double w0, double invW0) noexcept REALTIME override;
    void scale(double factor) noexcept REALTIME; // of the numerator

    std::complex<double> response(double w) const noexcept REALTIME override;
    void squaredMagnitudes(const float* w, float* out, std::size_t count) const noexcept REALTIME override;
    double squaredMagnitude(double w) noexcept REALTIME override;
    void phases(const float* w, float* out, std::size_t count) const noexcept REALTIME override;
    void multiplySquaredMagnitudes(const float* w, float* inOut, std::size_t count) const noexcept REALTIME;
    void addPhases(const float* w, float* inOut, std::size_t count) const noexcept REALTIME;

    bool isFirstOrder() const noexcept REALTIME { return std::fabs(b2) <= epsilon && std::fabs(a2) <= epsilon; }
    // An extremum counts if it differs from both ends of the spectrum by more than tolerance times its own power.
    Extrema findExtrema(double tolerance) noexcept REALTIME;

    // The squared magnitude as a fraction of polynomials in w^2, valid while polyValid is set.
    bool polyValid = false;
    double N4 = 0.0, N2 = 0.0, N0 = 1.0, D4 = 0.0, D2 = 0.0, D0 = 1.0;

    std::int32_t partner = -1;   // -1 stands alone, 0 and 1 are the halves of a band pass pair
    float damping = 0.70710677f; // 1 / (2 Q) of the low-pass pole that the section comes from
    double b2 = 0.0, b1 = 0.0, b0 = 1.0;
    double a2 = 0.0, a1 = 0.0, a0 = 1.0;

private:
    void renewPolynomials() noexcept REALTIME;
    double polynomialAt(double x) const noexcept REALTIME;
};

inline double BiquadPrototype::polynomialAt(double x) const noexcept REALTIME {
    const double power = ((N4 * x + N2) * x + N0) / ((D4 * x + D2) * x + D0);
    return power > 0.0 ? power : 0.0;
}

inline double BiquadPrototype::squaredMagnitude(double w) noexcept REALTIME {
    if (!polyValid)
        renewPolynomials();
    return polynomialAt(w * w);
}
