// The channels of one host block as the audio side wants them: a pointer for each that the ports declare, whatever the
// host left out.
// Threads: prepare on the main thread while not active, the rest on the audio thread.
#pragma once

#include "base/Realtime.h"
#include "framework/GenericPluginProcessor.h"
#include "host/clap/Clap.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

class ClapAudioBlock {
public:
    static constexpr std::size_t channelLimit = 32;           // each side
    static constexpr std::uint32_t longestPrepared = 1 << 16; // frames; hosts may promise blocks without end

    void setShape(std::span<const clap_audio_port_info> inputPorts, std::uint32_t outputChannels); // [main & !active]
    // [main & !active] the longest block that the host promises; beyond `longestPrepared` it comes in several spans
    void prepare(std::uint32_t frames);

    // Gathers the channels. Those that the host leaves out, wherever they stand, read silence and write nowhere.
    void begin(const clap_process& block) noexcept REALTIME;
    void advance(std::size_t frames) noexcept REALTIME;
    void silenceFurtherOutputs(const clap_process& block) const noexcept REALTIME; // channels beyond those of the port

    GenericPluginProcessor::Buffers buffers() noexcept REALTIME;
    bool allSilent() const noexcept REALTIME { return silent; } // every input is told to be constant 0
    bool allInputsGiven() const noexcept REALTIME { return complete; }
    std::size_t longestSpan() const noexcept REALTIME { return silence.size(); } // what silence can stand in for

private:
    void beginInputs(const clap_process& block) noexcept REALTIME;
    void beginOutputs(const clap_process& block) noexcept REALTIME;

    std::vector<std::uint32_t> portChannels; // of the inputs, in order
    std::size_t inputCount = 0;
    std::size_t outputCount = 0;
    std::vector<float> silence;
    std::vector<float> nowhere;
    std::array<const float*, channelLimit> inputs{};
    std::array<float*, channelLimit> outputs{};
    bool silent = false;
    bool complete = false;
};
