// The loops of the envelopes, one implementation an instruction set behind one pointer.
// Threads: any; nothing allocates.
#pragma once

#include "base/Realtime.h"

#include <cstdint>

// The shares of the way to the input that a sample covers, above 0 and at most 1.
struct FollowerSteps {
    double rise;
    double fall;
};

// Goes on from `level` and returns the level at the end. `out` may be the input; no other overlap.
using FollowerKernel = double (*)(const FollowerSteps& steps, double level, const float* in, float* out,
                                  std::int32_t count) noexcept;

// Plain C++, the arithmetic as it is defined.
FollowerKernel plainFollowerKernel() noexcept REALTIME;

// 4 samples at once; null where the processor cannot. Differs from the plain kernel in how doubles are rounded.
FollowerKernel wideFollowerKernel() noexcept REALTIME;

// The fastest that this processor runs, chosen once.
FollowerKernel followerKernel() noexcept REALTIME;
