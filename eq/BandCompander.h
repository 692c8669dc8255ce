// Turns the level of a band's region into an offset of its gain.
// Threads: those of wave::Producer.
#pragma once

#include "base/Property.h"
#include "base/Realtime.h"
#include "eq/Follower.h"
#include "eq/NormalizerStub.h"
#include "wave/Filter.h"
#include "wave/FloatParameterBus.h"

#include <cstdint>

// The output is in dB: 0 while the input is below the threshold, and up to `range` above it.
class BandCompander final : public wave::Filter, public PropertyOwner {
public:
    static constexpr float lowestEdge = 3.321928f;   // log2 of 10 Hz
    static constexpr float highestEdge = 14.872674f; // log2 of 30 kHz
    static constexpr float limitingRatio = 99.9999f; // from here on the amount follows the level one to one

    explicit BandCompander(wave::Environment& owner);

    Property<float> attack;          // percent, of the times that the region allows
    LimitedProperty<float> highEdge; // log2 of Hz, of the region
    FloatParameterBus knee;          // dB, 0 to 72
    LimitedProperty<float> lowEdge;
    Property<bool> autoThreshold; // the level counts against the signal's own long-term level
    Property<float> range;        // dB; negative: a loud signal pulls the gain down
    FloatParameterBus ratio;      // 0 to 100
    Property<float> release;      // percent
    FloatParameterBus threshold;  // dB, -72 to 0

    void filter(const wave::BasicBlock<float>& inputBlock, wave::BasicBlock<float>& outputBlock, std::int32_t count,
                std::uint32_t mode) noexcept REALTIME override;
    void reset() noexcept REALTIME override;
    void propertyChanged(AbstractProperty& changed) noexcept override;

    void resynchronize() noexcept REALTIME { normalizer.resynchronize(); } // the region has become another one

private:
    // Levels become amounts, 0 to |range|. True: threshold, ratio and knee stood still.
    bool applyLaw(float* inOut, std::int32_t count) noexcept REALTIME;
    // `constant`: the amounts are all alike. True: they still are, and nothing had to move.
    bool applyEnvelope(float* inOut, std::int32_t count, bool constant) noexcept REALTIME;
    void updateTimes() noexcept REALTIME;

    Follower fastFollower;
    Follower slowFollower;
    Follower finalFollower;
    NormalizerStub normalizer;
    std::uint64_t nextPosition = 0;
};
