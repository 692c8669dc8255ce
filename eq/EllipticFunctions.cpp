#include "eq/EllipticFunctions.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace {

constexpr std::size_t maxSteps = 16;

} // namespace

double completeEllipticIntegral(double parameter) noexcept {
    double a = 1.0;
    double b = std::sqrt(1.0 - parameter);
    double c = 1.0 - b;
    double previous = 0.0;
    do { // until the difference, which shrinks quadratically, has reached its rounding noise
        previous = c;
        c = (a - b) / 2.0;
        const double mean = (a + b) / 2.0;
        b = std::sqrt(a * b);
        a = mean;
    } while (c < previous);
    return std::numbers::pi / 2.0 / a;
}

double inverseJacobiTangent(double tangent, double parameter) noexcept {
    constexpr double limit = 1.2e-7;
    double a = 1.0;
    double b = std::sqrt(1.0 - parameter);
    double phi = std::atan(tangent);
    double scale = 1.0;
    for (std::size_t step = 0; step < maxSteps && std::fabs(a - b) > limit * a; ++step) {
        // The next angle is phi + atan(b / a tan(phi)), on the same branch as 2 phi.
        const double added = std::atan(b / a * std::tan(phi));
        phi += added + std::numbers::pi * std::round((phi - added) / std::numbers::pi);
        const double mean = (a + b) / 2.0;
        b = std::sqrt(a * b);
        a = mean;
        scale *= 2.0;
    }
    return phi / (scale * a);
}

JacobiFunctions jacobiFunctions(double u, double parameter) noexcept {
    constexpr double limit = 1e-8;
    std::array<double, maxSteps> ratios{}; // c / a of each step down
    double a = 1.0;
    double b = std::sqrt(1.0 - parameter);
    std::size_t steps = 0;
    double angle = u;
    while (steps < maxSteps && std::fabs(a - b) > limit * a) {
        const double c = (a - b) / 2.0;
        const double mean = (a + b) / 2.0;
        b = std::sqrt(a * b);
        a = mean;
        ratios[steps++] = c / a;
        angle *= 2.0;
    }
    angle *= a;
    while (steps > 0) {
        --steps;
        angle = (angle + std::asin(ratios[steps] * std::sin(angle))) / 2.0;
    }
    const double sn = std::sin(angle);
    return {sn, std::cos(angle), std::sqrt(1.0 - parameter * sn * sn)};
}
