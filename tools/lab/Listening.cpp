#include "tools/lab/Listening.h"

#include "tools/host/Failure.h"
#include "tools/host/Ports.h"
#include "tools/lab/LabClock.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr std::size_t mostChannels = 16; // that an analyzer hears

std::size_t samplesOfLook(double rate) {
    return std::max<std::size_t>(1, static_cast<std::size_t>(std::lround(rate / Listening::looksPerSecond)));
}

// A piece of a recording, silence behind its end.
Channels piece(const Recording& sound, std::size_t from, std::size_t count) {
    Channels samples(sound.samples.size(), std::vector<float>(count));
    const std::size_t end = std::min(from + count, sound.frames());
    for (std::size_t channel = 0; channel < samples.size() && from < end; ++channel)
        std::copy(sound.samples[channel].begin() + static_cast<std::ptrdiff_t>(from),
                  sound.samples[channel].begin() + static_cast<std::ptrdiff_t>(end), samples[channel].begin());
    return samples;
}

} // namespace

SampleSource::SampleSource(std::size_t channels, std::size_t delay)
    : waiting(std::clamp<std::size_t>(channels, 1, mostChannels), std::vector<float>(delay)) {}

void SampleSource::add(const Channels& samples, std::size_t count) {
    for (std::size_t channel = 0; channel < waiting.size(); ++channel) {
        std::vector<float>& line = waiting[channel];
        if (channel < samples.size())
            line.insert(line.end(), samples[channel].begin(),
                        samples[channel].begin() + static_cast<std::ptrdiff_t>(count));
        else
            line.resize(line.size() + count);
    }
}

void SampleSource::unlock() {
    const auto read = static_cast<std::ptrdiff_t>(blockCount() * samplesOfBlock);
    for (std::vector<float>& line : waiting)
        line.erase(line.begin(), line.begin() + read);
}

std::span<const float> SampleSource::blockData(std::size_t block, std::size_t channel) const {
    return std::span(waiting[channel]).subspan(block * samplesOfBlock, samplesOfBlock);
}

Recording::Recording(const std::string& path) {
    SoundReader reader(path);
    sampleRate = reader.sampleRate();
    if (reader.frames() == 0 || reader.channels() == 0)
        throw Failure(path + " is empty");
    reader.read(samples, reader.frames());
}

Listening::Listening(PluginInstance& wanted, double sampleRate)
    : player(wanted, {.sampleRate = sampleRate}, events), rate(sampleRate) {
    const AudioPorts& ports = player.ports();
    const std::size_t late = wanted.latency();
    before.emplace(ports.mainInputChannels(), late);
    behind.emplace(ports.mainOutputChannels(), 0);
    side.emplace(ports.inputs.size() > 1 ? ports.inputs[1].channels : 1, late);
}

void Listening::play(const Recording& input, const Recording* sideChain, double seconds,
                     const std::function<void(double elapsedMs)>& look) {
    const auto wanted = static_cast<std::size_t>(std::llround(std::min(seconds, 1e6) * rate));
    const std::size_t end = std::min(wanted, input.frames());
    std::vector<Channels> inputs(sideChain != nullptr ? 2 : 1);
    Channels made;
    for (std::size_t position = 0; position < end;) {
        const std::size_t count = std::min(samplesOfLook(rate), end - position);
        inputs[0] = piece(input, position, count);
        if (sideChain != nullptr)
            inputs[1] = piece(*sideChain, position, count);
        player.play(count, inputs, made);
        before->add(inputs[0], count);
        behind->add(made, count);
        side->add(sideChain != nullptr ? inputs[1] : Channels(), count);
        position += count;
        const double elapsedMs = 1e3 * static_cast<double>(count) / rate;
        labClock::advance(elapsedMs);
        look(elapsedMs);
    }
}

void listen(const Recording& sound, SampleSource& source, const std::function<void(double elapsedMs)>& look) {
    for (std::size_t position = 0; position < sound.frames();) {
        const std::size_t count = std::min(samplesOfLook(sound.sampleRate), sound.frames() - position);
        source.add(piece(sound, position, count), count);
        position += count;
        const double elapsedMs = 1e3 * static_cast<double>(count) / sound.sampleRate;
        labClock::advance(elapsedMs);
        look(elapsedMs);
    }
}
