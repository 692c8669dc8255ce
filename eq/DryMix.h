// Between the dry and the filtered signal.
// Threads: any.
#pragma once

#include "base/Realtime.h"

#include <cstdint>

struct DrySignal {
    const float* samples = nullptr;
    const float* gain = nullptr; // a factor a sample; null: none

    DrySignal from(std::int32_t begin) const noexcept REALTIME {
        return {samples + begin, gain != nullptr ? gain + begin : nullptr};
    }
    double at(std::int32_t i) const noexcept REALTIME {
        return static_cast<double>(gain != nullptr ? samples[i] * gain[i] : samples[i]);
    }
};

// Puts dry + share * (filtered - dry) in place of the filtered samples; share rises by step with each.
void mixWithDry(const DrySignal& dry, float* filtered, std::int32_t count, double share, double step) noexcept REALTIME;
