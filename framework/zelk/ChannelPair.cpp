#include "framework/zelk/ChannelPair.h"

using Conversion = MidSideConverter::Conversion;

ZelkProcessor::ChannelPair::ChannelPair(wave::Environment& environment)
    : chainEncoder(environment, Conversion::encode)
    , chainDecoder(environment, Conversion::decode)
    , sideEncoder(environment, Conversion::encode)
    , soloDecoder(environment, Conversion::decode)
    , outputEncoder(environment)
    , outputDecoder(environment) {}

void ZelkProcessor::ChannelPair::setOutputMode(ChannelMode mode) noexcept REALTIME {
    const bool midSide = mode == ChannelMode::midSide;
    trustedRealtime([&] {
        outputEncoder.conversion = midSide ? Conversion::encode : Conversion::none;
        outputDecoder.conversion = midSide ? Conversion::decode : Conversion::none;
    });
}
