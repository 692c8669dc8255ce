// Poles and zeros of the low passes that all other designs are made from.
// Threads: any.
#pragma once

#include "eq/AnalogFilterPrototype.h"

#include <span>

// One root for each conjugate pair; for odd orders the last one is the real pole. The lowest damping comes first.
// Writes (order + 1) / 2 roots. Orders from 1 to 16.
void butterworthRoots(std::int32_t order, std::span<AnalogFilterPrototype::Root> roots) noexcept REALTIME;

// Order 12, passband ripple 0.025 dB, stop band at -90 dB, gain 1 at frequency 0. Writes 6 roots.
void brickwallRoots(std::span<AnalogFilterPrototype::Root> roots) noexcept REALTIME;
