// One band's analog design: a product of up to 8 sections. It is the reference for everything that a band is heard or
// drawn as: digital sections are fitted to it, kernels and curves are taken from it.
// Threads: any, one at a time for each object. Copyable, no heap.
#pragma once

#include "eq/AnalogFilterPrototypeBase.h"
#include "eq/BiquadPrototype.h"
#include "eq/FilterTypes.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

class AnalogFilterPrototype final : public AnalogFilterPrototypeBase {
public:
    using Shape = FilterShape;
    using BiquadPrototype = ::BiquadPrototype;

    enum class Kind : std::int32_t { butterworth = 0, elliptic = 3 };

    // A zero at infinity has zeroRe infinite.
    struct Root {
        double poleRe = -1.0;
        double poleIm = 0.0;
        double zeroRe = 0.0;
        double zeroIm = 0.0;
        double gain = 1.0;
    };

    static constexpr std::size_t maxSections = 8;
    static constexpr std::int32_t maxOrder = 16;

    static constexpr bool hasGain(Shape wanted) noexcept REALTIME;
    // A shape whose sections are doubled by the transform from low pass to band pass or band stop.
    static constexpr bool isBandShape(Shape wanted) noexcept REALTIME;

    // Leaves the frequency alone: setFrequency follows. The order is that of the result, at most 16, and even for band
    // shapes; the elliptic kind is a low or high pass of order 12. Gain is linear.
    void design(Kind wantedKind, Shape wantedShape, std::int32_t wantedOrder, float wantedQ,
                float wantedGain) noexcept REALTIME;
    void setFrequency(double w0, double invW0) noexcept REALTIME override;
    void scaleGain(float factor) noexcept REALTIME; // of the whole product

    std::complex<double> response(double w) const noexcept REALTIME override;
    void squaredMagnitudes(const float* w, float* out, std::size_t count) const noexcept REALTIME override;
    double squaredMagnitude(double w) noexcept REALTIME override;
    void phases(const float* w, float* out, std::size_t count) const noexcept REALTIME override;

    std::span<BiquadPrototype> used() noexcept REALTIME; // the sections of the design
    std::span<const BiquadPrototype> used() const noexcept REALTIME;

    std::array<BiquadPrototype, maxSections> sections;
    Kind kind = Kind::butterworth;
    float gain = 1.0f;
    std::int32_t sectionCount = 0;
    std::int32_t order = 0;
    std::array<Root, maxSections> roots; // of the low pass, before its frequency is transformed
    float q = 0.70710677f;
    Shape shape = Shape::lowPass;

private:
    void designFlatTilt() noexcept REALTIME;
    void appendSections(Shape part, std::int32_t partOrder, float partQ, float partGain) noexcept REALTIME;
    // Of one section of the low or high pass; may append the second half of a pair.
    void spreadToBand(BiquadPrototype& section, double bandwidth) noexcept REALTIME;
};

constexpr bool AnalogFilterPrototype::hasGain(Shape wanted) noexcept REALTIME {
    return wanted == Shape::lowShelf || wanted == Shape::highShelf || wanted == Shape::tiltShelf ||
           wanted == Shape::bell || wanted == Shape::flatTilt;
}

constexpr bool AnalogFilterPrototype::isBandShape(Shape wanted) noexcept REALTIME {
    return wanted == Shape::bell || wanted == Shape::bandPass || wanted == Shape::notch;
}

inline std::span<BiquadPrototype> AnalogFilterPrototype::used() noexcept REALTIME {
    return std::span(sections).first(static_cast<std::size_t>(sectionCount));
}

inline std::span<const BiquadPrototype> AnalogFilterPrototype::used() const noexcept REALTIME {
    return std::span(sections).first(static_cast<std::size_t>(sectionCount));
}
