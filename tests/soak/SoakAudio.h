// The audio thread of the soak: blocks of every length, sound of every kind, storms of parameters and MIDI, resets and
// restarts, and a look at every sample that comes back.
// Threads: prepare and the constructor on the main thread while not active, run on the audio thread.
#pragma once

#include "tests/soak/SoakRandom.h"
#include "tests/support/ClapTestHost.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

class SoakAudio {
public:
    SoakAudio(const clap_plugin* wanted, SoakRandom source);

    void prepare(double sampleRate, std::uint32_t longestBlock); // shapes the buffers by the ports

    // From start_processing to stop_processing; `between` is called after every block.
    void run(double seconds, const std::function<void()>& between);

    void addStorm(ClapTestEvents& events, std::uint32_t frames, std::uint32_t count); // sorted
    void addSetting(ClapTestEvents& events); // a mode, a resolution and bands in use, all at time 0

    std::uint64_t getBlocks() const { return blocks; }
    std::uint64_t getEvents() const { return eventsSent; }
    const std::string& getFault() const { return fault; } // the first; empty: none

private:
    std::uint32_t id(const std::string& name) const;
    void addValue(ClapTestEvents& events, std::uint32_t time, const clap_param_info& parameter);
    void fillInputs(std::uint32_t frames);
    void runBlock(std::uint32_t frames);
    void check(std::uint32_t frames);

    const clap_plugin* const plugin;
    SoakRandom random;
    std::vector<clap_param_info> parameters;
    double rate = 0.0;
    std::uint32_t maxFrames = 0;
    bool fixedBlocks = false;
    bool inPlace = false;
    std::vector<std::uint32_t> portChannels;
    std::vector<std::vector<float>> inputs;
    std::vector<std::vector<float>> outputs;
    std::vector<std::uint64_t> masks;
    ClapTestEvents events;
    ClapTestOutput taken;
    std::uint64_t blocks = 0;
    std::uint64_t eventsSent = 0;
    std::string fault;
};
