#include "eq/SectionCoefficients.h"

#include "eq/MagnitudeMatch.h"

#include <algorithm>
#include <cmath>

namespace {

float warped(double w) noexcept REALTIME {
    constexpr float maxW = 3.1315928f; // just below Nyquist, where the tangent has no end
    return std::tan(std::min(static_cast<float>(w), maxW) / 2.0f);
}

void bilinearDirect(const BiquadPrototype& section, double k, SectionRow row) noexcept REALTIME {
    if (section.isFirstOrder()) {
        const double n = 1.0 / (k * section.a0 + section.a1);
        row[0] = (k * section.b0 + section.b1) * n;
        row[1] = (k * section.b0 - section.b1) * n;
        row[2] = 0.0;
        row[3] = (k * section.a0 - section.a1) * n;
        row[4] = 0.0;
        return;
    }
    const double b0 = k * k * section.b0;
    const double b1 = k * section.b1;
    const double a0 = k * k * section.a0;
    const double a1 = k * section.a1;
    const double n = 1.0 / (section.a2 + a0 + a1);
    row[0] = (section.b2 + b0 + b1) * n;
    row[1] = 2.0 * (b0 - section.b2) * n;
    row[3] = 2.0 * (a0 - section.a2) * n;
    // (b2 + b0 - b1) n and (a2 + a0 - a1) n, so that both sums at DC keep their digits
    row[2] = 4.0 * b0 * n - (row[0] + row[1]);
    row[4] = 4.0 * a0 * n - (1.0 + row[3]);
}

void bilinearStateVariable(const BiquadPrototype& section, double k, SectionRow row) noexcept REALTIME {
    if (section.isFirstOrder()) { // as a section of second order whose second pole and zero cancel
        const double t = std::sqrt(k * section.a0);
        const double root = std::sqrt(section.a1);
        const double u = 1.0 / (root * t);
        row[0] = t / root;
        row[1] = (k * section.a0 + section.a1) * u + row[0];
        row[2] = section.b0 / section.a0;
        row[3] = (k * section.b0 + section.b1) * u;
        row[4] = section.b1 / section.a1;
        return;
    }
    const double v = 1.0 / std::sqrt(section.a0 * section.a2);
    row[0] = section.a0 * k * v;
    row[1] = section.a1 * v + row[0];
    row[2] = section.b0 / section.a0;
    row[3] = section.b1 * v;
    row[4] = section.b2 / section.a2;
}

} // namespace

void coefficients(AnalogFilterPrototype& prototype, std::span<double> row, CoefficientCalculation calculation,
                  SectionForm form) noexcept REALTIME {
    const std::size_t count = static_cast<std::size_t>(prototype.sectionCount);
    if (calculation == CoefficientCalculation::magnitudeMatch &&
        prototype.kind == AnalogFilterPrototype::Kind::butterworth) {
        for (std::size_t i = 0; i < count; ++i)
            fitSection(prototype.sections[i], matchPoints(prototype, i),
                       row.subspan(i * sectionLength).first<sectionLength>(), form);
        return;
    }
    float k = warped(prototype.frequency);
    for (std::size_t i = 0; i < count; ++i) {
        const BiquadPrototype& section = prototype.sections[i];
        if (prototype.shape == FilterShape::flatTilt)
            k = warped(section.frequency);
        const SectionRow own = row.subspan(i * sectionLength).first<sectionLength>();
        if (form == SectionForm::direct)
            bilinearDirect(section, static_cast<double>(k), own);
        else
            bilinearStateVariable(section, static_cast<double>(k), own);
    }
}
