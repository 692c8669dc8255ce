#include "framework/zelk/BandPlacement.h"

#include "framework/zelk/EQParameterSet.h"

namespace {

enum class Chain { leftRight, midSide, either };

Chain wantedChain(StereoPlacement placement) noexcept {
    switch (placement) {
    case StereoPlacement::left:
    case StereoPlacement::right:
        return Chain::leftRight;
    case StereoPlacement::mid:
    case StereoPlacement::side:
        return Chain::midSide;
    case StereoPlacement::stereo:
        break;
    }
    return Chain::either;
}

} // namespace

void ChainDemand::add(StereoPlacement placement) noexcept REALTIME {
    const Chain wanted = wantedChain(placement);
    onLeftRight += wanted == Chain::leftRight ? 1 : 0;
    onMidSide += wanted == Chain::midSide ? 1 : 0;
}

ChainLayout ChainDemand::layout() const noexcept REALTIME {
    return {onLeftRight > 0 || onMidSide == 0, onMidSide > 0};
}

bool bandIsActive(const EQParameterSet& band) noexcept REALTIME {
    return band.used.get() && (band.enabled.get() || band.solo.get());
}

bool bandOnChannel(const EQParameterSet& band, chl::SpeakerCode channel) noexcept REALTIME {
    if (!bandIsActive(band) || !chl::speakerInSet(channel, band.speakers.get()))
        return false;
    const StereoPlacement placement = band.stereoPlacement.get();
    if (placement == StereoPlacement::stereo)
        return true;
    if ((channel & chl::middleBit) != 0)
        return false;
    const bool onLeft = placement == StereoPlacement::left || placement == StereoPlacement::mid;
    return (channel & (onLeft ? chl::leftBit : chl::rightBit)) != 0;
}

bool inMidSideChain(StereoPlacement placement, const ChainLayout& chains) noexcept REALTIME {
    const Chain wanted = wantedChain(placement);
    return wanted == Chain::midSide || (wanted == Chain::either && !chains.leftRight);
}

ChainLayout chainLayout(const EQParameterSetArray& bands) noexcept REALTIME {
    ChainDemand demand;
    for (std::int32_t index = 0; index < bandCount; ++index) {
        if (bands.set(index).used.get())
            demand.add(bands.set(index).stereoPlacement.get());
    }
    return demand.layout();
}

bool anyBandUsed(const EQParameterSetArray& bands) noexcept REALTIME {
    for (std::int32_t index = 0; index < bandCount; ++index) {
        if (bands.set(index).used.get())
            return true;
    }
    return false;
}

bool isLeftOfPair(chl::Layout layout, std::size_t channel) noexcept REALTIME {
    const chl::SpeakerCode left = chl::speakerCode(layout, channel);
    const chl::SpeakerCode right = chl::speakerCode(layout, channel + 1);
    return (left & chl::leftBit) != 0 && right == ((left & ~chl::leftBit) | chl::rightBit);
}
