// Where bands work: on which channel of the layout, and in which of the two chains of a channel. Both sides of an
// instance ask it of their own parameters.
// Threads: any; nothing allocates.
#pragma once

#include "base/Realtime.h"
#include "eq/ProcessingTypes.h"
#include "framework/chl/Layouts.h"

#include <cstddef>
#include <cstdint>

class EQParameterSet;
class EQParameterSetArray;

// Which chains a channel has. The one of left and right stands before the one of mid and side.
struct ChainLayout {
    bool leftRight = true;
    bool midSide = false;

    std::int32_t count() const noexcept REALTIME { return (leftRight ? 1 : 0) + (midSide ? 1 : 0); }
    bool operator==(const ChainLayout&) const = default;
};

// How many bands ask for a chain by their placement.
class ChainDemand {
public:
    void add(StereoPlacement placement) noexcept REALTIME;
    ChainLayout layout() const noexcept REALTIME; // stereo bands join where the others are, left and right first

private:
    std::int32_t onLeftRight = 0;
    std::int32_t onMidSide = 0;
};

// Used, and enabled or soloed.
[[nodiscard]] bool bandIsActive(const EQParameterSet& band) noexcept REALTIME;

// Left and mid bands run on the left channel of a pair, right and side bands on its right channel, stereo bands on
// every speaker of their set; channels on the middle line take stereo bands only.
[[nodiscard]] bool bandOnChannel(const EQParameterSet& band, chl::SpeakerCode channel) noexcept REALTIME;

// Mid and side bands run in the chain between the converters, and stereo bands too when there is no other.
[[nodiscard]] bool inMidSideChain(StereoPlacement placement, const ChainLayout& chains) noexcept REALTIME;

// Of all used bands. Bands that still fade out are known to the graph alone.
ChainLayout chainLayout(const EQParameterSetArray& bands) noexcept REALTIME;
[[nodiscard]] bool anyBandUsed(const EQParameterSetArray& bands) noexcept REALTIME;

// Channels come as left and right of one place, side by side, and as single ones.
[[nodiscard]] bool isLeftOfPair(chl::Layout layout, std::size_t channel) noexcept REALTIME;
