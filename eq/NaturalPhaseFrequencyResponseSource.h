// What turns the digital sections of a chain into their analog models: analog response by digital response. It stays
// sane where the digital response is close to 0.
// Threads: those of DiscreteFrequencyResponseSource; filling the lists with the audio excluded or between its cycles.
#pragma once

#include "eq/DiscreteFrequencyResponseSource.h"

class NaturalPhaseFrequencyResponseSource final : public DiscreteFrequencyResponseSource {
public:
    using DiscreteFrequencyResponseSource::DiscreteFrequencyResponseSource;

    std::complex<float> response(std::int32_t index) noexcept REALTIME override;
    // From one call to the next in ascending order: where a ratio cannot be believed, the last one that could stands
    // in.
    void responses(std::int32_t start, std::span<std::complex<float>> out) noexcept REALTIME override;
    float squaredMagnitude(std::int32_t index) noexcept REALTIME override;
    void squaredMagnitudes(std::int32_t start, std::span<float> out) noexcept REALTIME override;

    // The bands of the chain, in the same order in both; not owned.
    std::vector<DiscreteFrequencyResponseSource*> numerators;   // analog
    std::vector<DiscreteFrequencyResponseSource*> denominators; // digital

private:
    struct Ratio {
        std::complex<double> value = 1.0;
        double power = 1.0; // of the denominator; at 0 there is no value
    };
    class RatioReader;

    bool isBelievable(const Ratio& here, std::complex<double> next) const noexcept REALTIME;

    std::complex<double> previous = 1.0; // the last accepted value
};
