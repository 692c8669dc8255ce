// A response on a grid of frequencies, by index: what kernels are built from.
// Threads: those of FrequencyResponseSource; the grid changes with the audio excluded or between its cycles.
#pragma once

#include "base/NotifyEvent.h"
#include "base/Property.h"
#include "eq/FrequencyResponseSource.h"

#include <complex>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

class DiscreteFrequencyResponseSource : public FrequencyResponseSource {
public:
    class Mapping;

    explicit DiscreteFrequencyResponseSource(Mapping& grid) noexcept : mapping(&grid) {}

    std::complex<float> responseAt(float frequency) noexcept REALTIME override; // of the nearest index

    // Indices from 0; one outside of a cache is computed. The spans take the values from index `start`.
    virtual std::complex<float> response(std::int32_t index) noexcept REALTIME = 0;
    virtual void responses(std::int32_t start, std::span<std::complex<float>> out) noexcept REALTIME = 0;
    virtual float squaredMagnitude(std::int32_t index) noexcept REALTIME = 0;
    virtual void squaredMagnitudes(std::int32_t start, std::span<float> out) noexcept REALTIME = 0;

protected:
    Mapping* mapping; // not owned
};

// The grid, owned outside of its sources and shared by all of them: count steps from start to end, and so count + 1
// frequencies, in whatever unit its owner keeps them.
class DiscreteFrequencyResponseSource::Mapping final : public PropertyOwner, public EventSender {
public:
    Mapping(bool isLogarithmic, float first, float last, int steps);

    Property<bool> logarithmic;
    Property<float> end;
    Property<int> count; // steps, above 0
    Property<float> start;

    NotifyEvent changed; // after any of the four

    float frequency(std::int32_t index) noexcept REALTIME;
    std::int32_t nearestIndex(float frequency) const noexcept REALTIME; // half away from 0

protected:
    void propertyChanged(AbstractProperty& property) override;

private:
    void renew();
    float computeFrequency(std::int32_t index) const noexcept REALTIME;

    float step = 0.0f;           // logarithmic: of the natural logarithm
    std::int32_t validCount = 0; // frequencies stored so far
    std::vector<float> frequencies;
};
