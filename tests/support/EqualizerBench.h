// One instance of the loaded equalizer, its parameters by name, and sound through it.
// Threads: the one that made it.
#pragma once

#include "tests/support/ClapTestHost.h"

#include <complex>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

using Channels = std::vector<std::vector<float>>;

class EqualizerBench {
public:
    static constexpr clap_id stereo = 1; // layout

    explicit EqualizerBench(const char* libraryPath, clap_id layout = stereo, double sampleRate = 48000.0);
    EqualizerBench(const EqualizerBench&) = delete;
    EqualizerBench& operator=(const EqualizerBench&) = delete;

    // As the text of the value says; unknown names and texts fail the test. In force from the sample at which the next
    // rendering begins, or `position` samples behind it. Values glide as they do in a host: settle() lets them arrive.
    void set(std::string_view name, std::string_view text, std::size_t position = 0);
    void set(std::string_view name, double value, std::size_t position = 0);
    void settle(double seconds = 0.3); // silence in, nothing kept
    void restart();                    // the host stops and starts: values arrive at once

    // The main channels; the side chain is `sideChain`, or silence.
    Channels render(const Channels& main, std::uint32_t block = 256, const Channels* sideChain = nullptr);
    Channels impulseResponse(std::size_t channel, std::size_t length); // of one input channel

    std::size_t channels() const { return instance.outputs.size(); }
    std::uint32_t latency() const;
    ClapTestInstance& plugIn() { return instance; }
    clap_id id(std::string_view name) const;

private:
    struct Event {
        std::size_t position;
        clap_id id;
        double value;
    };

    double rate;
    ClapTestLibrary library;
    ClapTestHost host;
    ClapTestInstance instance;
    std::map<std::string, clap_id, std::less<>> ids;
    std::vector<Event> events; // in order of position
};

// Signals.
std::vector<float> sine(double hz, double amplitude, std::size_t length, double sampleRate = 48000.0);
std::vector<float> noise(std::uint32_t seed, double amplitude, std::size_t length); // white, even distribution
std::complex<double> spectrumAt(const std::vector<float>& samples, double hz, double sampleRate);
double magnitudeDb(const std::vector<float>& impulse, double hz, double sampleRate);

// Of the difference, in dB of full scale; -400 for no difference at all.
double peakDifferenceDb(const std::vector<float>& one, const std::vector<float>& other);

// The largest second difference: what a click raises far above that of the signal itself.
double roughness(const std::vector<float>& samples, std::size_t begin = 0, std::size_t end = SIZE_MAX);
