#include "eq/MagnitudeMatch.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

// H(s) = (r s^2 + P s + F) / (s^2 + R s + E) with s = j tan(w / 2).
struct Fitted {
    double r, P, F, R, E;
};

double topOf(const MatchPoints& points) noexcept REALTIME {
    const bool atNyquist = std::fabs(static_cast<float>(points.top)) <= static_cast<float>(BiquadPrototype::epsilon);
    return atNyquist ? std::numbers::pi : points.top;
}

double rootOfPositive(double x) noexcept REALTIME {
    return x > 0.0 ? std::sqrt(x) : 0.0;
}

void writeRow(const Fitted& fit, double atZero, SectionRow row, SectionForm form) noexcept REALTIME {
    if (form == SectionForm::direct) {
        const double n = 1.0 / (fit.E + 1.0 + fit.R);
        row[0] = (fit.F + fit.r + fit.P) * n;
        row[1] = -2.0 * (fit.r - fit.F) * n;
        row[3] = -2.0 * (1.0 - fit.E) * n;
        // Both sums at DC are small differences of large numbers: the last number of each takes up the rounding of the
        // others, which keeps low bands in tune.
        row[2] = 4.0 * fit.F * n - (row[0] + row[1]);
        row[4] = 4.0 * fit.E * n - (1.0 + row[3]);
        return;
    }
    const double g = std::sqrt(fit.E);
    row[0] = g;
    row[1] = g != 0.0 ? fit.R / g + g : 0.0;
    row[2] = atZero;
    row[3] = g != 0.0 ? fit.P / g : 0.0;
    row[4] = fit.r;
}

} // namespace

SectionFit fitSection(BiquadPrototype& section, const MatchPoints& points, SectionRow row,
                      SectionForm form) noexcept REALTIME {
    const double t1 = std::tan(points.a * 0.5), t2 = std::tan(points.b * 0.5), t3 = std::tan(points.c * 0.5);
    const double T1 = t1 * t1;
    const double T2 = t2 * t2;
    const double T3 = t3 * t3;
    const double M0 = section.squaredMagnitude(0.0);
    const double MN = section.squaredMagnitude(topOf(points));
    const double M1 = section.squaredMagnitude(points.a);
    const double M2 = section.squaredMagnitude(points.b);
    const double M3 = section.squaredMagnitude(points.c);

    const double flat = 1e-4 * M1;
    if (std::fabs(M1 - M0) < flat && std::fabs(M1 - MN) < flat && std::fabs(M1 - M2) < flat &&
        std::fabs(M1 - M3) < flat) {
        const double gain = std::sqrt(M1);
        const bool direct = form == SectionForm::direct;
        row[0] = direct ? gain : 0.0;
        row[1] = row[3] = 0.0;
        row[2] = row[4] = direct ? 0.0 : gain;
        return SectionFit::constant;
    }

    Fitted fit{};
    fit.r = std::sqrt(MN);
    const double u = T2 - T3;
    const double c = T1 - T2;
    const double z = T3 - T1;
    const double den = ((M2 - M3) * (M0 - M1) * T2 - (M1 - M3) * (M0 - M2) * T1) * T3 + (M0 - M3) * (M1 - M2) * T2 * T1;
    if (den != 0.0) {
        double v = ((u * MN + c * M2 + z * M3) * M1 + (z * M2 + c * M3) * MN + M3 * M2 * u) / den;
        // Below this the points cannot be met by real poles: the power at Nyquist gives way.
        const double floor = 0.0025000000000000005 / (t3 * t2);
        if (v < floor) {
            const double over = u * M1 + c * M3 + z * M2;
            const double power =
                ((T1 * M3 - T1 * M2 + T2 * M2 - T3 * M3) * M1 + (T3 - T2) * M3 * M2 + floor * den) / over;
            fit.r = over != 0.0 ? rootOfPositive(power) : 0.0;
            v = floor;
        }
        fit.E = std::sqrt(v) * t1 * t2 * t3;
    }
    const double rootOfM0 = std::sqrt(M0);
    fit.F = fit.E * rootOfM0;

    const double q6 = (M1 - M2) * T1 * T2;
    const double p1 = T1 * fit.r - fit.F;
    const double p2 = T2 * fit.r - fit.F;
    double P2 = 0.0;
    if (q6 != 0.0) {
        P2 = (p1 * p1 * T2 * M2 - ((T2 * T1 - fit.E * fit.E) * (T1 - T2) * M2 + p2 * p2 * T1) * M1) / q6;
        P2 = std::max(P2, 0.0);
    }
    fit.P = std::sqrt(P2);

    double R2 = 0.0;
    if (T1 * M1 != 0.0) {
        const double apart = T1 - fit.E;
        R2 = (P2 * T1 - apart * apart * M1 + p1 * p1) / (T1 * M1);
    }
    // Poles closer to the unit circle than this never come to rest in rounded arithmetic.
    constexpr double maxRadius = 1.0 - 1e-9;
    constexpr double minLoss = (1.0 - maxRadius * maxRadius) / (1.0 + maxRadius * maxRadius);
    const double leastR = (1.0 + fit.E) * minLoss;
    const bool held = !(R2 >= leastR * leastR);
    fit.R = held ? leastR : std::sqrt(R2);
    writeRow(fit, rootOfM0, row, form);
    return held ? SectionFit::held : SectionFit::matched;
}
