#include "framework/AudioSourceProxy.h"

#include "framework/ExchangeStream.h"
#include "platform/CriticalSections.h"

#include <algorithm>

AudioSourceProxy::AudioSourceProxy() : section(createCriticalSection(LockRank::proxy)) {}

void AudioSourceProxy::setSampleRate(float wanted) {
    const ScopedLock guard(*section);
    sampleRate = wanted;
    sizeRing();
}

void AudioSourceProxy::sizeRing() {
    constexpr float ringSeconds = 0.25f;
    readIndex = writeIndex = held = 0;
    if (channels == 0 || samples == 0)
        return;
    const auto wanted = static_cast<std::size_t>(sampleRate * ringSeconds);
    blocks = std::max((wanted + samples - 1) / samples, leastBlocks);
    ring.assign(blocks * channels * samples, 0.0f);
}

void AudioSourceProxy::receive(ExchangeStream& stream) {
    const auto sentChannels = stream.read<std::int32_t>();
    const auto count = stream.read<std::int32_t>();
    const auto size = stream.read<std::int32_t>();
    if (!stream.good() || sentChannels <= 0 || count <= 0 || size <= 0)
        return;
    const std::size_t perBlock = static_cast<std::size_t>(sentChannels) * static_cast<std::size_t>(size);
    const auto received = static_cast<std::size_t>(count);
    if (stream.samplesLeft() / perBlock < received) {
        stream.fail();
        return;
    }
    const ScopedLock guard(*section);
    if (static_cast<std::size_t>(sentChannels) != channels || static_cast<std::size_t>(size) != samples) {
        channels = static_cast<std::size_t>(sentChannels);
        samples = static_cast<std::size_t>(size);
        sizeRing();
    }
    for (std::size_t block = 0; block < received; ++block) {
        stream.readSamples(std::span(ring).subspan(writeIndex * perBlock, perBlock));
        writeIndex = (writeIndex + 1) % blocks;
    }
    counter += count;
    held = std::min(held + received, blocks);
}

std::size_t AudioSourceProxy::blockCount() const {
    return blocks == 0 ? 0 : (writeIndex + blocks - readIndex) % blocks;
}

std::span<const float> AudioSourceProxy::blockData(std::size_t blockIndex, std::size_t channel) const {
    return blockAt(readIndex + blockIndex, channel);
}

std::span<const float> AudioSourceProxy::blockAt(std::size_t position, std::size_t channel) const {
    return std::span(ring).subspan(((position % blocks) * channels + channel) * samples, samples);
}
