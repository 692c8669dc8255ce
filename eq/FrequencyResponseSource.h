// What has a complex response to a frequency.
// Threads: one at a time; on the audio thread the kernel task that owns it.
#pragma once

#include "base/Realtime.h"

#include <complex>

class FrequencyResponseSource {
public:
    virtual ~FrequencyResponseSource() = default;

    virtual std::complex<float> responseAt(float) noexcept REALTIME { return 1.0f; }
};
