// Sound through an instance as the displays hear it: input, output and side chain in blocks, the first and the last as
// late as the output.
// Threads: main.
#pragma once

#include "tools/host/Player.h"
#include "tools/host/PluginInstance.h"
#include "tools/host/SoundFile.h"
#include "wave/AudioSource.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

// Samples from anywhere as a source of blocks; what has been read once is gone.
class SampleSource final : public AudioSource {
public:
    static constexpr std::size_t samplesOfBlock = 256;

    SampleSource(std::size_t channels, std::size_t delay); // samples of silence ahead

    void add(const Channels& samples, std::size_t count); // empty: silence

    void lock() override {}
    void unlock() override;
    std::size_t blockSize() const override { return samplesOfBlock; }
    std::span<const float> blockData(std::size_t block, std::size_t channel) const override;
    std::size_t blockCount() const override { return waiting.front().size() / samplesOfBlock; }
    std::size_t channelCount() const override { return waiting.size(); }

private:
    Channels waiting;
};

// A whole file.
struct Recording {
    explicit Recording(const std::string& path); // throws Failure

    Channels samples;
    double sampleRate = 0.0;

    std::size_t frames() const { return samples.front().size(); }
};

class Listening {
public:
    static constexpr double looksPerSecond = 60.0;

    Listening(PluginInstance& wanted, double sampleRate);

    // Plays `seconds` of it, at most the recording, and calls `look` for each picture of a display.
    void play(const Recording& input, const Recording* sideChain, double seconds,
              const std::function<void(double elapsedMs)>& look);

    SampleSource& input() { return *before; }
    SampleSource& output() { return *behind; }
    SampleSource& sideChain() { return *side; }

private:
    EventList events;
    Player player;
    const double rate;
    std::optional<SampleSource> before;
    std::optional<SampleSource> behind;
    std::optional<SampleSource> side;
};

// A recording alone, look by look.
void listen(const Recording& sound, SampleSource& source, const std::function<void(double elapsedMs)>& look);
