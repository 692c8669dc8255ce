// What the audio side shows: read on the main thread, while the audio thread goes on.
#include "framework/ExchangeStream.h"
#include "framework/GenericPluginProcessor.h"
#include "framework/LevelSourceProxy.h"
#include "framework/SpectrumSourceProxy.h"

namespace {

// All sources of one kind, locked for a scope. Null pointers are passed by.
template <typename Source>
class LockedSources {
public:
    explicit LockedSources(const std::vector<Source*>& all) : sources(all) {
        for (Source* const source : sources)
            if (source != nullptr)
                source->lock();
    }
    ~LockedSources() {
        for (Source* const source : sources)
            if (source != nullptr)
                source->unlock();
    }
    LockedSources(const LockedSources&) = delete;
    LockedSources& operator=(const LockedSources&) = delete;

private:
    const std::vector<Source*>& sources;
};

void sendAudio(const AudioSource* source, ExchangeStream& stream) {
    const std::size_t channels = source != nullptr ? source->channelCount() : 0;
    const std::size_t blocks = source != nullptr ? source->blockCount() : 0;
    const std::size_t size = source != nullptr ? source->blockSize() : 0;
    for (const std::size_t number : {channels, blocks, size})
        stream.write(static_cast<std::int32_t>(number));
    if (size == 0)
        return;
    for (std::size_t block = 0; block < blocks; ++block)
        for (std::size_t channel = 0; channel < channels; ++channel)
            stream.writeSamples(source->blockData(block, channel));
}

} // namespace

void GenericPluginProcessor::readRequests(ExchangeStream& stream) {
    for (LevelSource* const source : levelSources) {
        const auto requested = stream.read<std::uint8_t>();
        if (source != nullptr)
            LevelSourceProxy::answer(*source, requested);
    }
}

void GenericPluginProcessor::writeSources(ExchangeStream& stream) {
    framesSinceExchange.store(0, std::memory_order_relaxed);
    {
        const LockedSources lockedAudio(audioSources);
        const LockedSources lockedSpectra(spectrumSources);
        for (const AudioSource* const source : audioSources)
            sendAudio(source, stream);
        for (LevelSource* const source : levelSources)
            LevelSourceProxy::send(source, stream);
        for (SpectrumSource* const source : spectrumSources)
            SpectrumSourceProxy::send(source, stream);
    }
    stream.write(lastTempo.load(std::memory_order_relaxed));
    if (learn == nullptr)
        return;
    for (MidiMessage message; learn->pop(message);) {
        for (const std::uint8_t byte : {std::uint8_t{1}, message.status, message.data1, message.data2})
            stream.write(byte);
    }
    stream.write(std::uint8_t{0});
}
