#include "framework/ReceivedSources.h"

#include "framework/ExchangeStream.h"

#include <cstdint>

ReceivedSources::ReceivedSources(const GenericPluginBase::SourceCounts& wanted, std::size_t channels, bool learns)
    : counts(wanted), learning(learns) {
    for (std::int32_t index = 0; index < counts.audio; ++index)
        audioProxies.push_back(std::make_unique<AudioSourceProxy>());
    for (std::int32_t index = 0; index < counts.spectra; ++index)
        spectrumProxies.push_back(std::make_unique<SpectrumSourceProxy>());
    for (std::int32_t index = 0; index < counts.furtherLevels; ++index)
        levelProxies.push_back(std::make_unique<LevelSourceProxy>());
    setChannelCount(channels);
}

// A display may hold one until it hears of the new layout, so those beyond it stay.
void ReceivedSources::setChannelCount(std::size_t channels) {
    const auto further = static_cast<std::size_t>(counts.furtherLevels);
    presentLevels = further + channels * static_cast<std::size_t>(counts.levelsPerChannel);
    while (levelProxies.size() < presentLevels)
        levelProxies.push_back(std::make_unique<LevelSourceProxy>());
    for (std::size_t index = further; index < levelProxies.size(); ++index)
        levelProxies[index]->clear();
}

void ReceivedSources::setSampleRate(float rate) {
    for (const std::unique_ptr<AudioSourceProxy>& proxy : audioProxies)
        proxy->setSampleRate(rate);
}

LevelSourceProxy& ReceivedSources::channelLevel(std::size_t channel) noexcept {
    return level(static_cast<std::size_t>(counts.furtherLevels) +
                 channel * static_cast<std::size_t>(counts.levelsPerChannel));
}

void ReceivedSources::writeRequests(ExchangeStream& stream) {
    for (std::size_t index = 0; index < presentLevels; ++index)
        stream.write(levelProxies[index]->takeRequests());
}

void ReceivedSources::read(ExchangeStream& stream, bool watched) {
    for (const std::unique_ptr<AudioSourceProxy>& proxy : audioProxies)
        proxy->receive(stream);
    for (std::size_t index = 0; index < presentLevels; ++index)
        levelProxies[index]->receive(stream);
    for (const std::unique_ptr<SpectrumSourceProxy>& proxy : spectrumProxies)
        proxy->receive(stream);
    const auto tempo = stream.read<float>();
    if (stream.good())
        presentTempo = tempo;
    if (learning)
        readMessages(stream, watched && !dropsMessages);
    dropsMessages = false;
}

// Without an interface nobody would ever take them, and what comes before one opens is not meant for learning.
void ReceivedSources::readMessages(ExchangeStream& stream, bool kept) {
    while (stream.read<std::uint8_t>() == 1) {
        MidiMessage message;
        message.status = stream.read<std::uint8_t>();
        message.data1 = stream.read<std::uint8_t>();
        message.data2 = stream.read<std::uint8_t>();
        if (kept && stream.good())
            messages.push_back(message);
    }
}

bool ReceivedSources::takeLearnMessage(MidiMessage& message) {
    if (messages.empty())
        return false;
    message = messages.front();
    messages.pop_front();
    return true;
}
