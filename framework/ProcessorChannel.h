// One channel of the layout on the audio side: where it comes in, where its side chain comes in, what it gives out.
// Threads: audio, except construction (main).
#pragma once

#include "base/Realtime.h"
#include "framework/GenericPluginProcessor.h"
#include "framework/chl/Layouts.h"
#include "wave/Input.h"

#include <cstddef>
#include <cstdint>

class GenericPluginProcessor::Channel {
public:
    // The side chain channel of the host. Unused or unconnected, it hands on silence whatever stands in its place.
    class ConnectedSideChainInput final : public wave::Input {
    public:
        explicit ConnectedSideChainInput(GenericPluginProcessor& processor);
        void process(wave::BasicBlock<float>& block, std::int32_t count, std::uint32_t mode) noexcept REALTIME override;

    private:
        GenericPluginProcessor& owner;
    };

    Channel(GenericPluginProcessor& processor, std::size_t channelIndex, chl::SpeakerCode speaker);
    Channel(const Channel&) = delete;
    Channel& operator=(const Channel&) = delete;
    virtual ~Channel() = default;

    virtual void parameterChanged(std::int32_t id) noexcept REALTIME; // -1: all
    virtual void sampleRateChanged() {}

    const chl::SpeakerCode speakerCode;
    ConnectedSideChainInput connectedSideChain;
    const std::size_t index;
    wave::Input mainInput;
    wave::Input sideChainInput;       // as the host gives it, with the main input in its place when there is none
    wave::Producer* output = nullptr; // set by the derived class; not owned

protected:
    GenericPluginProcessor& owner;
};
