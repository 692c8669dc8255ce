#include "eq/MatchPoints.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

using Shape = AnalogFilterPrototype::Shape;

constexpr double pi = std::numbers::pi;

// What all the rules start from, and the points that they move. The constants of the rules are empirical: by shape, Q
// and place of the band they keep the fit stable everywhere and close where ears are sharp.
struct Search {
    double w0;
    double inverseQ;
    std::int32_t partner;
    float damping;
    int extrema;
    double x;       // the first extremum, else w0, at most Nyquist
    float nearness; // 0 up to 0.8 of Nyquist, rising to 1 there
    double a;
    double b = 0.0;
    double c = 0.0;
    double top = 0.0;
    double maxA = 0.98 * pi;
    double maxB = 0.9 * pi;
    double maxC = 0.9751 * pi;
};

// The top follows the band from a lower bound on.
double topFrom(double y, double bound, double limit = pi) noexcept REALTIME {
    return y >= bound ? std::min(y, limit) : bound;
}

float relativeQ(const Search& s) noexcept REALTIME {
    return static_cast<float>(1.4142135381698608 / s.inverseQ); // 2 x 0.70710677
}

double squareOfNearness(const Search& s) noexcept REALTIME {
    return static_cast<double>(s.nearness * s.nearness);
}

double spreadOf(const Search& s) noexcept REALTIME {
    return static_cast<double>(std::clamp(s.nearness * s.nearness / 4.0f + s.damping, 0.1f, 0.8f));
}

void bellPair(Search& s) noexcept REALTIME {
    const float r = relativeQ(s);
    const bool wide = r < 0.3f;
    const double rc = static_cast<double>(std::clamp(r, 0.3f, 1.0f));
    const bool upper = s.partner == 1;
    s.top = topFrom(1.8 * s.x, 0.83 * pi);
    if (wide || s.extrema == 0) {
        const double p = std::max(std::exp2(-0.5 * s.inverseQ), 0.05);
        s.a = std::min(upper ? s.w0 / p : s.w0 * p, pi / 2.0);
    } else if (s.extrema == 2) {
        s.a = std::max(s.w0 * (upper ? 0.5 : 0.05), s.a);
    } else {
        s.a = std::min(s.a, s.w0) * rc;
    }
    const double c1 = std::min(1.0 / static_cast<double>(r), 1.0);
    s.c = 0.999 * static_cast<double>(static_cast<float>(rc * rc)) * s.a;
    s.b = (0.995 - 0.5 * c1) * s.c;
    if (upper) {
        if ((wide || s.extrema == 0) && r < 0.1f) {
            const double blend = 10.0 * static_cast<double>(r);
            s.c = (s.c - 0.8 * s.a) * blend + 0.8 * s.a;
            s.b = (s.b - 0.1 * s.a) * blend + 0.1 * s.a;
        } else {
            s.b *= 1.0 - 0.1 * squareOfNearness(s);
        }
    }
    s.maxA = (upper ? 0.998 : 0.99) * pi;
    s.maxC = 0.9995 * s.maxA;
    s.maxB = 0.99 * s.maxA;
}

void bell(Search& s) noexcept REALTIME {
    s.top = topFrom(1.2 * s.x, 0.9 * pi);
    const double spread = spreadOf(s);
    s.b = (1.0 - spread) * s.x;
    s.c = (1.0 - 0.05 * spread) * s.a;
}

void notch(Search& s) noexcept REALTIME {
    s.a = std::min((0.9998 - 0.001 * squareOfNearness(s)) * s.x, s.maxA);
    s.top = topFrom(1.2 * s.a, 0.95 * pi);
    s.c = 0.999 * s.a;
    s.maxC = 0.97902 * pi;
    s.b = 0.01 * s.a;
}

void notchPair(Search& s) noexcept REALTIME {
    const float r = relativeQ(s);
    const double rc = static_cast<double>(std::min(r, 1.0f));
    s.top = topFrom(1.8 * s.x, 0.83 * pi);
    s.maxA = 0.9999 * pi;
    s.maxC = 0.9989001 * pi;
    s.maxB = 0.989901 * pi;
    double a = s.x;
    if (s.partner == 1)
        a = std::min((0.9998 - 0.0005 * squareOfNearness(s)) * s.x, s.maxA);
    else if (s.extrema == 1)
        a = std::max(std::exp2(-0.5 * s.inverseQ), 0.1) * s.w0;
    s.a = std::max(rc * a, 0.5 * s.w0);
    s.c = std::max(0.999 * rc * rc * s.a, 0.02 * s.w0);
    const double c1 = std::min(1.0 / static_cast<double>(r), 1.0);
    s.b = std::max((0.995 - 0.9 * c1 * c1) * s.c, 0.001 * s.w0);
}

void bandPass(Search& s) noexcept REALTIME {
    s.top = s.partner < 0 ? topFrom(1.25 * s.x, 0.85 * pi) : topFrom(1.5 * s.x, 0.9 * pi, 0.99 * pi);
    const double m = 0.5 * (1.0 - static_cast<double>(std::min(relativeQ(s), 1.0f)));
    s.c = (0.999 - m) * s.a;
    s.b = 0.01 * s.a;
}

void highPass(Search& s) noexcept REALTIME {
    if (s.extrema > 0) {
        const float place = static_cast<float>(0.44209706414415373 * s.x - 0.41666666666666663);
        const double v = static_cast<double>(place * place) * 0.2 + 0.785;
        s.top = v > 0.96 ? s.a : std::max(v * pi, s.a);
    }
    const double z = static_cast<double>(4.0f * s.damping * s.damping - 2.0f);
    const double resonance = std::clamp(-0.5 * z, 0.0, 1.0);
    double p = z < 0.0 ? std::max(std::sqrt(-0.5 * z), 0.5) : 0.5;
    p = (p - 1.0) * resonance + 1.0;
    const double a = s.w0 / p;
    const double above = std::clamp(a - pi, 0.0, 0.3 * pi);
    s.a = std::min(0.3 * pi * resonance + 0.7 * pi, std::min(pi - above, a));
    double m = 0.2;
    if (z >= 6.0)
        m -= (std::min(z, 20.0) - 6.0) * 0.012857142857142859; // 0.18 / 14
    s.c = m * s.a;
    s.b = 0.001 * s.a;
}

void lowPass(Search& s) noexcept REALTIME {
    s.c = s.extrema == 1 ? std::max(s.a, 0.5 * s.w0) : 0.5 * s.w0;
    s.a = s.w0;
    s.b = 0.5 * s.c;
}

void shelf(Search& s, bool tilts) noexcept REALTIME {
    const double spread = spreadOf(s);
    if (s.extrema < 2) {
        if (tilts) {
            s.a = std::min(s.w0, 0.6 * pi);
            s.c = 0.5 * s.a;
            s.b = 0.05 * s.a;
        } else {
            s.a = 0.5 * s.w0;
            s.b = (1.0 - spread) * s.a;
            s.c = (1.0 - 0.05 * spread) * s.a;
        }
        return;
    }
    if (tilts || s.a >= 0.95 * pi) {
        s.a = s.b;
        s.b = (1.0 - spread) * s.a;
        s.c = (1.0 - 0.05 * spread) * s.a;
        return;
    }
    const double m = std::max(s.a, 0.7);
    s.top = topFrom(0.0196 * pi * m * m + 0.77 * pi, 0.1 * (pi - s.a) + s.a);
    const double apart = static_cast<double>(static_cast<float>(s.a - s.b)) - 0.15;
    s.maxA = 0.98 * pi - 0.15 * std::clamp(apart, 0.0, 1.0) * pi;
    s.maxB = 0.95 * s.maxA;
    s.maxC = 0.995 * s.maxB;
    s.c = (1.0 - 0.05 * spread) * s.b;
}

// The sections of a flat tilt count as the shelves that they are.
Shape shapeOf(const AnalogFilterPrototype& prototype, std::size_t sectionIndex) noexcept REALTIME {
    if (prototype.shape != Shape::flatTilt)
        return prototype.shape;
    constexpr Shape parts[] = {Shape::lowShelf, Shape::tiltShelf, Shape::highShelf};
    return parts[sectionIndex];
}

} // namespace

MatchPoints matchPoints(AnalogFilterPrototype& prototype, std::size_t sectionIndex) noexcept REALTIME {
    BiquadPrototype& section = prototype.sections[sectionIndex];
    if (section.isFirstOrder())
        return {0.9 * pi, 0.0045 * pi, 0.09 * pi, 0.0};

    const Shape shape = shapeOf(prototype, sectionIndex);
    Search s{};
    s.w0 = section.frequency;
    s.inverseQ = 1.0 / static_cast<double>(prototype.q);
    s.partner = section.partner;
    s.damping = section.damping;
    if (AnalogFilterPrototype::isBandShape(shape))
        s.damping = static_cast<float>(0.5 * s.inverseQ / 0.70710677 * static_cast<double>(s.damping));

    double tolerance = 1e-6;
    if (shape == Shape::bell && s.partner == 0)
        tolerance = s.w0 >= 0.5 ? 1e-5 : 1e-4;
    const BiquadPrototype::Extrema extrema = section.findExtrema(tolerance);
    s.extrema = extrema.count;
    s.a = std::min(extrema.count == 0 ? s.w0 : extrema.first, pi);
    const bool shelves = shape == Shape::lowShelf || shape == Shape::highShelf || shape == Shape::tiltShelf;
    if (extrema.count == 2) {
        s.b = std::min(extrema.second, pi);
        if (shelves)
            std::swap(s.a, s.b);
    }
    s.x = s.a;
    const double e = std::clamp(s.x / pi - 0.8, 0.0, 0.2);
    s.nearness = static_cast<float>(25.0 * e * e);

    if (shape == Shape::bell)
        s.partner < 0 ? bell(s) : bellPair(s);
    else if (shape == Shape::notch)
        s.partner < 0 ? notch(s) : notchPair(s);
    else if (shape == Shape::bandPass)
        bandPass(s);
    else if (shape == Shape::highPass)
        highPass(s);
    else if (shape == Shape::lowPass)
        lowPass(s);
    else
        shelf(s, shape == Shape::tiltShelf);
    return {std::min(s.a, s.maxA), std::min(s.b, s.maxB), std::min(s.c, s.maxC), s.top};
}
