// The converters between left and right and mid and side that the two channels of a pair share.
// Threads: audio, except construction (main).
#pragma once

#include "base/Realtime.h"
#include "eq/ProcessingTypes.h"
#include "framework/zelk/ZelkProcessor.h"
#include "wave/MidSideConverter.h"

#include <memory>

class ZelkProcessor::ChannelPair {
public:
    explicit ChannelPair(wave::Environment& environment);

    void setOutputMode(ChannelMode mode) noexcept REALTIME; // which sides the output level and pan act on

    MidSideConverter chainEncoder; // around the chain of mid and side
    MidSideConverter chainDecoder;
    MidSideConverter sideEncoder; // the inputs as mid and side, for the solo path
    MidSideConverter soloDecoder;
    MidSideConverter outputEncoder; // around the output volumes
    MidSideConverter outputDecoder;
    std::unique_ptr<MidSideConverter>
        delayedEncoder; // the inputs late by the latency, as mid and side; while there is one
};
