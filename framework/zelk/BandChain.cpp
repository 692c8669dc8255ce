#include "framework/zelk/BandChain.h"

#include "framework/zelk/ZelkChannel.h"

void ZelkProcessor::BandChain::add(std::int32_t band) noexcept REALTIME {
    list[count++] = band;
}

wave::Producer& ZelkProcessor::BandChain::connect(wave::Producer& input) noexcept REALTIME {
    wave::Producer* signal = &input;
    for (const std::int32_t band : bands()) {
        EQFilter& filter = channel.mainFilter(band);
        filter.input = signal;
        signal = &filter;
    }
    return *signal;
}
