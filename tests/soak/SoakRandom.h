// What the soak draws from. One a thread, so that each thread draws the same whatever the other does.
// Threads: the one that owns it.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <random>
#include <span>

class SoakRandom {
public:
    explicit SoakRandom(std::uint32_t seed) : engine(seed) {}

    std::uint32_t bits() { return static_cast<std::uint32_t>(engine()); }
    std::uint32_t below(std::uint32_t limit) { return bits() % std::max(limit, 1u); }
    bool chance(double share) { return between(0.0, 1.0) < share; }
    double between(double lowest, double highest) { return lowest + (highest - lowest) * (bits() / 4294967296.0); }
    template <typename Value>
    Value pick(std::span<const Value> values) {
        return values[below(static_cast<std::uint32_t>(values.size()))];
    }

private:
    std::mt19937 engine;
};
