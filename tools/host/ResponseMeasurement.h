// The frequency response of an instance, from one input channel to one output channel, by its impulse response.
// Threads: main.
#pragma once

#include "tools/host/EventList.h"
#include "tools/host/Player.h"
#include "tools/host/PluginInstance.h"

#include <complex>
#include <cstddef>
#include <cstdint>
#include <vector>

struct Response {
    double sampleRate = 0.0;
    std::uint32_t input = 0;
    std::uint32_t output = 0;
    std::vector<std::complex<double>> bins; // from 0 Hz to half the sample rate; the latency is taken out of the phase
    bool steady = false;                    // two impulses in a row gave the same
    bool decayed = false;                   // the impulse response ended within the measurement

    double hz(std::size_t bin) const;
    double magnitudeDb(std::size_t bin) const;  // minus infinity where nothing comes through
    double phaseDegrees(std::size_t bin) const; // -180 to 180
};

class ResponseMeasurement {
public:
    ResponseMeasurement(PluginInstance& wanted, double rate, std::uint32_t blockFrames);

    Response measure(std::uint32_t input, std::uint32_t output);

    std::uint32_t latency() const { return instance.latency(); }
    const AudioPorts& ports() const { return player.ports(); }

private:
    std::vector<float> impulseResponse(std::uint32_t input, std::uint32_t output);
    void warmUp();

    PluginInstance& instance;
    const double sampleRate;
    EventList noEvents;
    Player player;
    std::size_t size = 65536; // of the transform; grows until impulse responses fit
};
