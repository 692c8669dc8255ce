// The squared magnitude of the bands of a chain on the grid of its kernel. While few bands move, the product of all the
// others is kept from kernel to kernel.
// Threads: audio, except construction (main).
#pragma once

#include "base/Realtime.h"
#include "framework/zelk/EQParameterSet.h"
#include "framework/zelk/ZelkProcessor.h"
#include "wave/AlignedBuffer.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

class ZelkProcessor::ChainMagnitude {
public:
    explicit ChainMagnitude(ZelkProcessor& processor) : owner(processor) {}

    void resize(std::int32_t bins);                                    // of a new grid; allocates
    void begin(std::span<const std::int32_t> bands) noexcept REALTIME; // a kernel starts, with these bands
    void read(std::int32_t start, std::span<float> out, float factor) noexcept REALTIME; // ascending, from bin 0 on

    // Of a bin, in the kernel's units of work, if one with these bands began now.
    std::int32_t cost(std::span<const std::int32_t> bands) const noexcept REALTIME;

private:
    using Bands = std::uint32_t; // a bit each

    // Which bands the next kernel multiplies anew, and whether the product of the others must be made again.
    struct Plan {
        Bands moving = 0;
        Bands standing = 0;
        bool rebuilds = false;
    };
    Plan plan(std::span<const std::int32_t> bands) const noexcept REALTIME;
    void multiply(Bands bands, std::int32_t start, std::span<float> inOut) noexcept REALTIME;

    ZelkProcessor& owner;
    AlignedBuffer<float> product; // of the standing bands
    std::int32_t valid = 0;       // bins of it
    Plan present;
    std::array<std::uint32_t, bandCount> seen{}; // the designs' versions, of the last kernel
};
