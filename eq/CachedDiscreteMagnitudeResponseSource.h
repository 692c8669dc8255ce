// A real response whose squared magnitude is computed once for each index, in groups of 4.
// Threads: those of DiscreteFrequencyResponseSource; sizing with the audio excluded.
#pragma once

#include "eq/DiscreteFrequencyResponseSource.h"
#include "wave/AlignedBuffer.h"

class CachedDiscreteMagnitudeResponseSource : public DiscreteFrequencyResponseSource {
public:
    using DiscreteFrequencyResponseSource::DiscreteFrequencyResponseSource;

    void reserve(std::int32_t count);                       // room for at least so many values, and none of them valid
    void invalidate() noexcept REALTIME { validCount = 0; } // the design has changed; nothing else tells the cache

    std::complex<float> response(std::int32_t index) noexcept REALTIME override;
    void responses(std::int32_t start, std::span<std::complex<float>> out) noexcept REALTIME override;
    float squaredMagnitude(std::int32_t index) noexcept REALTIME override;
    void squaredMagnitudes(std::int32_t start, std::span<float> out) noexcept REALTIME override;

    // The cache itself, made up to the end of the range; null when the range is not within the capacity.
    const float* stored(std::int32_t start, std::size_t count) noexcept REALTIME {
        return provide(start, count) ? values.data() + start : nullptr;
    }

    std::int32_t getValidCount() const noexcept REALTIME { return validCount; }
    std::int32_t getCapacity() const noexcept REALTIME { return values.getCapacity(); }

protected:
    virtual float computeSquaredMagnitude(std::int32_t index) noexcept REALTIME = 0;
    // start and count in whole groups of 4
    virtual void computeSquaredMagnitudes(std::int32_t start, float* out, std::int32_t count) noexcept REALTIME = 0;

private:
    bool provide(std::int32_t start, std::size_t count) noexcept REALTIME; // false: not within the capacity

    AlignedBuffer<float> values; // capacity a multiple of 4
    std::int32_t validCount = 0; // stored in order, from index 0
};
