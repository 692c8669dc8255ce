// The three ways to look at a designed band: its analog magnitude, its analog response, and what its digital sections
// make of it.
// Threads: those of DiscreteFrequencyResponseSource.
#pragma once

#include "eq/AnalogFilterPrototype.h"
#include "eq/BiquadSections.h"
#include "eq/CachedDiscreteFrequencyResponseSource.h"
#include "eq/CachedDiscreteMagnitudeResponseSource.h"

#include <array>

// The grid as filters want it: the radians per sample of each index, made by the owner of the grid for the present
// sample rate. Neither it nor the prototype is owned by a source.
class EQMagnitudeResponse final : public CachedDiscreteMagnitudeResponseSource {
public:
    EQMagnitudeResponse(Mapping& grid, const AlignedBuffer<float>& gridRadians, AnalogFilterPrototype& design) noexcept
        : CachedDiscreteMagnitudeResponseSource(grid), radians(gridRadians), prototype(design) {}

protected:
    float computeSquaredMagnitude(std::int32_t index) noexcept REALTIME override;
    void computeSquaredMagnitudes(std::int32_t start, float* out, std::int32_t count) noexcept REALTIME override;

private:
    const AlignedBuffer<float>& radians;
    AnalogFilterPrototype& prototype;
};

class EQAnalogResponse final : public CachedDiscreteFrequencyResponseSource {
public:
    EQAnalogResponse(Mapping& grid, const AlignedBuffer<float>& gridRadians,
                     const AnalogFilterPrototype& design) noexcept
        : CachedDiscreteFrequencyResponseSource(grid), radians(gridRadians), prototype(design) {}

protected:
    void computeResponses(std::int32_t start, std::span<std::complex<float>> out) noexcept REALTIME override;

private:
    const AlignedBuffer<float>& radians;
    const AnalogFilterPrototype& prototype;
};

class EQBiquadResponse final : public CachedDiscreteFrequencyResponseSource {
public:
    using Row = std::array<double, AnalogFilterPrototype::maxSections * sectionLength>;

    EQBiquadResponse(Mapping& grid, const AlignedBuffer<float>& gridRadians,
                     const AnalogFilterPrototype& design) noexcept
        : CachedDiscreteFrequencyResponseSource(grid), radians(gridRadians), prototype(design) {}

    Row row{}; // direct form, of the prototype's sections; whoever writes it invalidates the cache

protected:
    void computeResponses(std::int32_t start, std::span<std::complex<float>> out) noexcept REALTIME override;

private:
    const AlignedBuffer<float>& radians;
    const AnalogFilterPrototype& prototype;
};
