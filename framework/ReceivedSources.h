// What the editor side has of the graph: samples, levels and spectra as the last exchange brought them, the tempo, and
// the MIDI messages from which controllers are learned.
// Threads: [main] but where the sources say more.
#pragma once

#include "framework/AudioSourceProxy.h"
#include "framework/GenericPluginBase.h"
#include "framework/LevelSourceProxy.h"
#include "framework/MidiMessage.h"
#include "framework/SpectrumSourceProxy.h"

#include <cstddef>
#include <deque>
#include <memory>
#include <vector>

class ReceivedSources {
public:
    // learns: messages for MIDI learn come with the rest.
    ReceivedSources(const GenericPluginBase::SourceCounts& wanted, std::size_t channels, bool learns);

    void setChannelCount(std::size_t channels); // of the layout; its meters begin anew
    void setSampleRate(float rate);             // Hz

    void writeRequests(ExchangeStream& stream);
    void read(ExchangeStream& stream, bool watched); // watched: there is an interface that takes the messages

    // None of them moves or goes away before this object, whatever the layout.
    std::size_t audioCount() const noexcept { return audioProxies.size(); }
    AudioSourceProxy& audio(std::size_t index) noexcept { return *audioProxies[index]; }
    std::size_t levelCount() const noexcept { return presentLevels; }
    LevelSourceProxy& level(std::size_t index) noexcept { return *levelProxies[index]; } // in the order of the graph
    LevelSourceProxy& channelLevel(std::size_t channel) noexcept;                        // the first of that channel
    std::size_t spectrumCount() const noexcept { return spectrumProxies.size(); }
    SpectrumSourceProxy& spectrum(std::size_t index) noexcept { return *spectrumProxies[index]; }
    float tempo() const noexcept { return presentTempo; } // beats per minute

    // Whoever begins to look sets this, so that what came in before is not taken for learning. It lasts one exchange.
    void dropLearnMessages() noexcept { dropsMessages = true; }
    [[nodiscard]] bool takeLearnMessage(MidiMessage& message); // the oldest; false: there is none

private:
    void readMessages(ExchangeStream& stream, bool kept);

    const GenericPluginBase::SourceCounts counts;
    const bool learning;
    std::vector<std::unique_ptr<AudioSourceProxy>> audioProxies;
    std::vector<std::unique_ptr<LevelSourceProxy>> levelProxies; // as many as the widest layout so far had
    std::vector<std::unique_ptr<SpectrumSourceProxy>> spectrumProxies;
    std::size_t presentLevels = 0;
    std::deque<MidiMessage> messages;
    float presentTempo = 120.0f;
    bool dropsMessages = false;
};
