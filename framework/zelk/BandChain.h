// The bands of one channel that run on the same signal, one behind the other.
// Threads: audio, except construction (main).
#pragma once

#include "base/Realtime.h"
#include "framework/zelk/EQParameterSet.h"
#include "framework/zelk/ZelkProcessor.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

class ZelkProcessor::BandChain {
public:
    explicit BandChain(ZelkChannel& ownChannel) : channel(ownChannel) {}
    BandChain(const BandChain&) = delete;
    BandChain& operator=(const BandChain&) = delete;

    void clear() noexcept REALTIME { count = 0; }
    void add(std::int32_t band) noexcept REALTIME; // in ascending order
    // Puts the filters of the bands one behind the other. The result is where the signal comes out: the input itself
    // when there is no band.
    wave::Producer& connect(wave::Producer& input) noexcept REALTIME;

    std::span<const std::int32_t> bands() const noexcept REALTIME { return std::span(list).first(count); }

private:
    ZelkChannel& channel;
    std::array<std::int32_t, bandCount> list{};
    std::size_t count = 0;
};
