// The read side of a spectrum that is made anew from time to time.
// Threads: those of LockedSource.
#pragma once

#include "wave/LockedSource.h"

#include <cstddef>
#include <cstdint>
#include <span>

class SpectrumSource : public LockedSource {
public:
    // Valid between lock and unlock; size also outside.
    virtual std::span<const float> data() const = 0; // size / 2 + 1 linear magnitudes, 1: a sine of full scale
    virtual std::size_t size() const = 0;            // of the FFT; 0: no spectrum yet
    virtual std::uint32_t frameCounter() const = 0;  // one more with each new spectrum; wraps
};
