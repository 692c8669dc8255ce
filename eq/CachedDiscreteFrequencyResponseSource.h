// A complex response that is computed once for each index.
// Threads: those of DiscreteFrequencyResponseSource; sizing with the audio excluded.
#pragma once

#include "eq/DiscreteFrequencyResponseSource.h"

class CachedDiscreteFrequencyResponseSource : public DiscreteFrequencyResponseSource {
public:
    using DiscreteFrequencyResponseSource::DiscreteFrequencyResponseSource;

    void resize(std::size_t count);                         // room for so many values, and none of them valid
    void invalidate() noexcept REALTIME { validCount = 0; } // the design has changed; nothing else tells the cache

    std::complex<float> response(std::int32_t index) noexcept REALTIME override;
    void responses(std::int32_t start, std::span<std::complex<float>> out) noexcept REALTIME override;
    float squaredMagnitude(std::int32_t index) noexcept REALTIME override;
    void squaredMagnitudes(std::int32_t start, std::span<float> out) noexcept REALTIME override;

    std::int32_t getValidCount() const noexcept REALTIME { return validCount; }

protected:
    // Many at a time, for speed.
    virtual void computeResponses(std::int32_t start, std::span<std::complex<float>> out) noexcept REALTIME = 0;

private:
    std::vector<std::complex<float>> values;
    std::int32_t validCount = 0; // stored in order, from index 0
};
