// The samples of one audio source of the graph, as the exchange brought them: a ring of a quarter second.
// Threads: the exchange writes; one local reader, the interface's; readers of other instances hold the section.
#pragma once

#include "base/CriticalSection.h"
#include "wave/AudioSource.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

class ExchangeStream;

// The local reader takes what has come since it last unlocked. It needs no lock, because while there is an interface
// only that interface exchanges. Other instances have reading positions of their own and leave this one's alone.
class AudioSourceProxy final : public AudioSource {
public:
    // One more than the graph can send at once. Only rates below 36.9 kHz would have fewer in a quarter second.
    static constexpr std::size_t leastBlocks = 37;

    AudioSourceProxy();

    void setSampleRate(float wanted);     // [main] Hz; empties the ring
    void receive(ExchangeStream& stream); // [exchange] whole, or nothing when the stream fails

    // The local reader.
    void lock() override {}
    void unlock() override { readIndex = writeIndex; }
    std::size_t blockSize() const override { return samples; }
    std::span<const float> blockData(std::size_t blockIndex, std::size_t channel) const override;
    std::size_t blockCount() const override; // modulo the ring
    std::size_t channelCount() const override { return channels; }

    // Readers of other instances, inside the section.
    CriticalSection& ringSection() noexcept { return *section; }
    std::int64_t receivedBlocks() const noexcept { return counter; } // since the start
    std::size_t ringBlocks() const noexcept { return blocks; }
    std::size_t heldBlocks() const noexcept { return held; } // of those received, how many the ring still has
    std::size_t writePosition() const noexcept { return writeIndex; }
    std::span<const float> blockAt(std::size_t position, std::size_t channel) const; // modulo the ring

private:
    void sizeRing();

    const std::unique_ptr<CriticalSection> section; // guards all below between the exchange and other instances
    std::vector<float> ring;                        // block, then channel, then sample
    std::size_t samples = 0;                        // a block and channel
    std::size_t channels = 0;
    std::size_t blocks = 0; // of the ring; 0: nothing has come yet
    std::size_t held = 0;
    std::size_t readIndex = 0;
    std::size_t writeIndex = 0;
    std::int64_t counter = 0;
    float sampleRate = 44100.0f; // Hz
};
