#include "framework/SpectrumSourceProxy.h"

#include "framework/ExchangeStream.h"

#include <algorithm>

void SpectrumSourceProxy::send(SpectrumSource* source, ExchangeStream& stream) {
    const std::span<const float> sent = source != nullptr ? source->data() : std::span<const float>();
    stream.write(source != nullptr ? source->frameCounter() : std::uint32_t{0});
    stream.write(static_cast<std::int32_t>(sent.size()));
    stream.writeSamples(sent);
}

void SpectrumSourceProxy::receive(ExchangeStream& stream) {
    const auto sentFrames = stream.read<std::uint32_t>();
    const auto count = stream.read<std::int32_t>();
    if (!stream.good())
        return;
    const auto bins = static_cast<std::size_t>(std::max(count, 0));
    if (stream.samplesLeft() < bins) {
        stream.fail();
        return;
    }
    frames = sentFrames;
    if (bins == 0)
        return;
    if (bins == magnitudes.size() && !wasRead) {
        scratch.resize(bins);
        stream.readSamples(scratch);
        std::transform(scratch.begin(), scratch.end(), magnitudes.begin(), magnitudes.begin(),
                       [](float fresh, float kept) { return std::max(fresh, kept); });
        return;
    }
    magnitudes.resize(bins);
    stream.readSamples(magnitudes);
    wasRead = false;
}
