#include "eq/DiscreteFrequencyResponseSource.h"

#include <algorithm>
#include <cmath>

std::complex<float> DiscreteFrequencyResponseSource::responseAt(float frequency) noexcept REALTIME {
    return response(mapping->nearestIndex(frequency));
}

DiscreteFrequencyResponseSource::Mapping::Mapping(bool isLogarithmic, float first, float last, int steps)
    : logarithmic(this, isLogarithmic), end(this, last), count(this, steps), start(this, first) {
    renew();
}

void DiscreteFrequencyResponseSource::Mapping::propertyChanged(AbstractProperty&) {
    renew();
    changed.fire(this);
}

void DiscreteFrequencyResponseSource::Mapping::renew() {
    const auto steps = static_cast<float>(count.get());
    step = (logarithmic ? std::log(end / start) : end - start) / steps;
    validCount = 0;
    const std::size_t wanted = static_cast<std::size_t>(std::max(count.get(), 0)) + 1;
    if (frequencies.size() < wanted)
        frequencies.resize(wanted);
}

float DiscreteFrequencyResponseSource::Mapping::computeFrequency(std::int32_t index) const noexcept REALTIME {
    const double distance = static_cast<double>(index) * static_cast<double>(step);
    const double first = static_cast<double>(start);
    return static_cast<float>(logarithmic ? first * std::exp(distance) : first + distance);
}

float DiscreteFrequencyResponseSource::Mapping::frequency(std::int32_t index) noexcept REALTIME {
    if (index >= 0 && index < validCount)
        return frequencies[static_cast<std::size_t>(index)];
    const float computed = computeFrequency(index);
    if (index == validCount && static_cast<std::size_t>(index) < frequencies.size()) {
        frequencies[static_cast<std::size_t>(index)] = computed;
        ++validCount;
    }
    return computed;
}

std::int32_t DiscreteFrequencyResponseSource::Mapping::nearestIndex(float frequency) const noexcept REALTIME {
    const float steps = (logarithmic ? std::log(frequency / start) : frequency - start) / step;
    return static_cast<std::int32_t>(std::lround(steps));
}
