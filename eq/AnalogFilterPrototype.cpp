#include "eq/AnalogFilterPrototype.h"

#include "eq/LowPassRoots.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double epsilon = BiquadPrototype::epsilon;
constexpr float butterworthQ = 0.70710677f;
constexpr float minDamping = 0.03535534f; // 0.70710677 / 20: the resonance stops at 20 times that of the Butterworth

// The middle section of a flat tilt stands 5 octaves from its neighbours, the upper one a little less.
constexpr double flatTiltLow = 0.03125;
constexpr double flatTiltHigh = 31.25;

using Root = AnalogFilterPrototype::Root;
using Shape = AnalogFilterPrototype::Shape;

// The polynomial of a pair of conjugate roots, or of one real root, times gain.
void setPolynomial(double re, double im, double gain, double& c2, double& c1, double& c0) noexcept REALTIME {
    if (std::isinf(re)) {
        c2 = 0.0;
        c1 = 0.0;
        c0 = gain;
    } else if (std::fabs(im) > epsilon) {
        c2 = gain;
        c1 = -2.0 * re * gain;
        c0 = (re * re + im * im) * gain;
    } else {
        c2 = 0.0;
        c1 = gain;
        c0 = -re * gain;
    }
}

void setSection(BiquadPrototype& section, const Root& root, std::int32_t partner) noexcept REALTIME {
    setPolynomial(root.zeroRe, root.zeroIm, root.gain, section.b2, section.b1, section.b0);
    setPolynomial(root.poleRe, root.poleIm, 1.0, section.a2, section.a1, section.a0);
    section.partner = partner;
    section.polyValid = false;
}

// Spreads a gain evenly over the sections of a low pass: the zeros move out by as much as the poles move in.
void splitGain(std::span<Root> roots, double spread, bool tilts) noexcept REALTIME {
    const double inverse = 1.0 / spread;
    for (Root& root : roots) {
        root.zeroRe = root.poleRe * spread;
        root.zeroIm = root.poleIm * spread;
        root.poleRe *= inverse;
        root.poleIm *= inverse;
        root.gain = !tilts ? 1.0 : std::fabs(root.poleIm) > epsilon ? inverse * inverse : inverse;
    }
}

void resonate(BiquadPrototype& section, float q) noexcept REALTIME {
    if (section.isFirstOrder())
        return;
    const float ratio = butterworthQ / q;
    section.damping = std::max(ratio * section.damping, minDamping);
    const double r = static_cast<double>(ratio);
    const double floor = static_cast<double>(minDamping);
    if (std::fabs(section.b1) > epsilon)
        section.b1 = std::max(section.b1 * r, floor);
    section.a1 = std::max(section.a1 * r, floor);
}

void swapToHighPass(BiquadPrototype& section) noexcept REALTIME {
    if (section.isFirstOrder()) {
        std::swap(section.b1, section.b0);
        std::swap(section.a1, section.a0);
    } else {
        std::swap(section.b2, section.b0);
        std::swap(section.a2, section.a0);
    }
}

// The root of that degree. Most degrees are powers of two, and square roots are cheap.
double rootOf(double x, std::int32_t degree) noexcept REALTIME {
    for (; degree % 2 == 0; degree /= 2)
        x = std::sqrt(x);
    return degree == 1 ? x : std::pow(x, 1.0 / static_cast<double>(degree));
}

struct RootPair {
    double firstRe, firstIm, secondRe, secondIm;
};

// Where the two roots of a low-pass polynomial go when s becomes (s^2 + 1) / (bandwidth s): the solutions of
// r x^2 + p x + r = 0.
RootPair bandPassRoots(double c2, double c1, double c0, double bandwidth) noexcept REALTIME {
    const double r = std::sqrt(c2);
    const double sigma = 0.5 / r * c1;
    const double pRe = bandwidth * sigma;
    const double pIm = bandwidth * std::sqrt(std::max(c0 - sigma * sigma, 0.0));
    // d is the principal root of p^2 - 4 r^2.
    const double re = pRe * pRe - pIm * pIm - 4.0 * c2;
    const double im = 2.0 * pRe * pIm;
    const double size = std::sqrt(re * re + im * im);
    double dRe = 0.0;
    double dIm = 0.0;
    if (re >= 0.0) {
        dRe = std::sqrt(0.5 * (size + re));
        dIm = dRe > 0.0 ? 0.5 * im / dRe : 0.0;
    } else {
        dIm = std::copysign(std::sqrt(0.5 * (size - re)), im);
        dRe = 0.5 * im / dIm;
    }
    const double scale = 0.5 / r;
    return {(dRe - pRe) * scale, (dIm - pIm) * scale, (-dRe - pRe) * scale, (-dIm - pIm) * scale};
}

} // namespace

void AnalogFilterPrototype::design(Kind wantedKind, Shape wantedShape, std::int32_t wantedOrder, float wantedQ,
                                   float wantedGain) noexcept REALTIME {
    kind = wantedKind;
    shape = wantedShape;
    order = wantedOrder;
    q = wantedQ;
    gain = wantedGain;
    sectionCount = 0;
    if (shape == Shape::flatTilt)
        designFlatTilt();
    else
        appendSections(shape, order, q, gain);
}

void AnalogFilterPrototype::designFlatTilt() noexcept REALTIME {
    q = butterworthQ * 0.5f;
    order = 6;
    appendSections(Shape::lowShelf, 2, q, 1.0f / gain);
    appendSections(Shape::tiltShelf, 2, q, std::sqrt(gain));
    appendSections(Shape::highShelf, 2, q, gain);
}

void AnalogFilterPrototype::appendSections(Shape part, std::int32_t partOrder, float partQ,
                                           float partGain) noexcept REALTIME {
    const bool inBand = isBandShape(part);
    const std::int32_t lowPassOrder = inBand ? partOrder / 2 : partOrder;
    const std::span<Root> own = std::span(roots).subspan(static_cast<std::size_t>(sectionCount),
                                                         static_cast<std::size_t>(lowPassOrder + 1) / 2);
    if (kind == Kind::elliptic)
        brickwallRoots(own);
    else
        butterworthRoots(lowPassOrder, own);

    std::array<float, maxSections> dampings{};
    for (std::size_t k = 0; k < own.size(); ++k) {
        const Root& pole = own[k];
        const double size = kind == Kind::butterworth ? 1.0 : std::hypot(pole.poleRe, pole.poleIm);
        dampings[k] = static_cast<float>(-pole.poleRe / size);
    }

    if (hasGain(part)) {
        const bool tilts = part == Shape::tiltShelf;
        const bool unity = std::fabs(partGain - 1.0f) <= static_cast<float>(epsilon);
        const std::int32_t degree = tilts ? lowPassOrder : 2 * lowPassOrder;
        splitGain(own, unity ? 1.0 : rootOf(static_cast<double>(partGain), degree), tilts);
    }

    const bool swaps =
        part == Shape::highPass || part == Shape::highShelf || part == Shape::tiltShelf || part == Shape::notch;
    for (std::size_t k = 0; k < own.size(); ++k) {
        BiquadPrototype& section = sections[static_cast<std::size_t>(sectionCount++)];
        setSection(section, own[k], -1);
        section.damping = dampings[k];
        if (k == 0 && !inBand && kind == Kind::butterworth)
            resonate(section, partQ);
        if (swaps)
            swapToHighPass(section);
        if (inBand)
            spreadToBand(section, 1.0 / static_cast<double>(partQ));
    }
}

void AnalogFilterPrototype::spreadToBand(BiquadPrototype& section, double bandwidth) noexcept REALTIME {
    if (section.isFirstOrder()) {
        const double b = section.b1 / bandwidth;
        const double a = section.a1 / bandwidth;
        section.b1 = section.b0;
        section.a1 = section.a0;
        section.b2 = section.b0 = b;
        section.a2 = section.a0 = a;
        return;
    }
    const RootPair poles = bandPassRoots(section.a2, section.a1, section.a0, bandwidth);
    RootPair zeros{};
    double firstGain = 1.0;
    double secondGain = 1.0;
    if (std::fabs(section.b2) > epsilon) {
        zeros = bandPassRoots(section.b2, section.b1, section.b0, bandwidth);
    } else { // both zeros at the origin: the gain is shared so that the halves peak alike
        const double share = poles.firstRe / poles.secondRe;
        firstGain = std::sqrt(section.b0 * share) * bandwidth;
        secondGain = std::sqrt(section.b0 / share) * bandwidth;
    }
    BiquadPrototype& second = sections[static_cast<std::size_t>(sectionCount++)];
    second.damping = section.damping;
    setSection(section, {poles.firstRe, poles.firstIm, zeros.firstRe, zeros.firstIm, firstGain}, 0);
    setSection(second, {poles.secondRe, poles.secondIm, zeros.secondRe, zeros.secondIm, secondGain}, 1);
}

void AnalogFilterPrototype::setFrequency(double w0, double invW0) noexcept REALTIME {
    frequency = w0;
    invFrequency = invW0;
    for (BiquadPrototype& section : used())
        section.setFrequency(w0, invW0);
    if (shape == Shape::flatTilt) {
        sections[0].setFrequency(w0 * flatTiltLow, invW0 / flatTiltLow);
        sections[2].setFrequency(w0 * flatTiltHigh, invW0 / flatTiltHigh);
    }
}

void AnalogFilterPrototype::scaleGain(float factor) noexcept REALTIME {
    const float share = std::pow(factor, 1.0f / static_cast<float>(sectionCount));
    for (BiquadPrototype& section : used())
        section.scale(static_cast<double>(share));
}

std::complex<double> AnalogFilterPrototype::response(double w) const noexcept REALTIME {
    double re = 1.0;
    double im = 0.0;
    for (const BiquadPrototype& section : used()) {
        const std::complex<double> factor = section.response(w);
        const double turned = re * factor.imag() + im * factor.real();
        re = re * factor.real() - im * factor.imag();
        im = turned;
    }
    return {re, im};
}

double AnalogFilterPrototype::squaredMagnitude(double w) noexcept REALTIME {
    double product = 1.0;
    for (BiquadPrototype& section : used())
        product *= section.squaredMagnitude(w);
    return product;
}

void AnalogFilterPrototype::squaredMagnitudes(const float* w, float* out, std::size_t count) const noexcept REALTIME {
    std::fill_n(out, wholeGroups(count), 1.0f);
    for (const BiquadPrototype& section : used())
        section.multiplySquaredMagnitudes(w, out, count);
}

void AnalogFilterPrototype::phases(const float* w, float* out, std::size_t count) const noexcept REALTIME {
    std::fill_n(out, wholeGroups(count), 0.0f);
    for (const BiquadPrototype& section : used())
        section.addPhases(w, out, count);
    wrapPhases(out, wholeGroups(count));
}
