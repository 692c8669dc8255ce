// One channel of the layout: its filters for every band, the chains they stand in, the solo path beside them and the
// output stage behind.
// Threads: audio, except construction (main).
#pragma once

#include "base/Realtime.h"
#include "eq/EQFilter.h"
#include "framework/ProcessorChannel.h"
#include "framework/zelk/BandChain.h"
#include "framework/zelk/BandDynamics.h"
#include "framework/zelk/ChannelPair.h"
#include "framework/zelk/EQParameterSet.h"
#include "framework/zelk/SoloPath.h"
#include "framework/zelk/ZelkProcessor.h"
#include "wave/DelayFilter.h"
#include "wave/LevelMeter.h"
#include "wave/LevelPanConverter.h"
#include "wave/Mixer.h"
#include "wave/VolumeFilter.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

class ZelkProcessor::ZelkChannel final : public GenericPluginProcessor::Channel {
public:
    // The channels of a pair come left first: `left` is the other one of a right channel, null for all others.
    ZelkChannel(ZelkProcessor& processor, std::size_t channelIndex, chl::SpeakerCode speaker, ZelkChannel* left);
    ~ZelkChannel() override;

    void parameterChanged(std::int32_t id) noexcept REALTIME override;

    // Wiring, when all channels have done the step before.
    void enableFilters(std::int32_t band) noexcept REALTIME;   // as the band's placement tells
    void updateDelays(std::int32_t latency) noexcept REALTIME; // samples; allocates when they change
    void gatherBands() noexcept REALTIME;                      // of this channel, into the chains that there are
    void connect() noexcept REALTIME;                          // chains, detectors and the solo path
    void connectChains() noexcept REALTIME;                    // the filters of the chains alone
    void connectDetector(std::int32_t band) noexcept REALTIME;

    // Changes that leave the wiring as it is.
    void followDynamics(std::int32_t band) noexcept REALTIME; // whether its gain may move from sample to sample
    bool setRegion(std::int32_t band, const BandDynamics::Region& region) noexcept REALTIME; // true: another one
    void markKernelsDirty() noexcept REALTIME;
    void setAutoGain(float linear) noexcept REALTIME; // glides
    void soloChanged() noexcept REALTIME;             // another band is soloed, or none

    EQFilter& mainFilter(std::int32_t band) noexcept REALTIME { return *mainFilters[static_cast<std::size_t>(band)]; }
    EQFilter& sideChainFilter(std::int32_t band) noexcept REALTIME {
        return *sideChainFilters[static_cast<std::size_t>(band)];
    }
    std::span<const std::int32_t> chainBands(std::size_t chain) const noexcept REALTIME {
        return chains[chain].bands();
    }
    [[nodiscard]] bool hasFadingBand() const noexcept REALTIME { return fadingBand; } // since the last wiring
    wave::Producer& soloSignal() noexcept REALTIME { return solo.filtered(); }        // ahead of its volume
    // As late as the output.
    wave::Producer& delayedInput() noexcept REALTIME;
    wave::Producer& delayedSideChain() noexcept REALTIME;
    LevelSource& meter() noexcept REALTIME { return outputMeter; }

    const float autoGainWeight; // how much the channel counts in the auto gain

private:
    void joinPair(ZelkChannel& left);
    void buildOutput();
    void renewDelay(std::unique_ptr<wave::DelayFilter>& delay, std::int32_t samples, wave::Producer& source);
    void wireSolo() noexcept REALTIME;
    [[nodiscard]] bool converts(std::size_t chain) const noexcept REALTIME; // the pair's mid/side chain has work to do
    void updateSoloLevels() noexcept REALTIME;
    void followSoloedBand(std::int32_t id) noexcept REALTIME;
    const EQParameterSet* soloedBand() const noexcept REALTIME; // null without
    std::size_t side() const noexcept REALTIME { return leftOfPair != nullptr ? 1 : 0; }

    ZelkProcessor& zelk;
    ZelkChannel* const leftOfPair;        // not owned; of a right channel
    ZelkChannel* rightOfPair = nullptr;   // not owned; of a left channel, from when it exists
    std::unique_ptr<ChannelPair> ownPair; // of a left channel
    ChannelPair* pair = nullptr;          // of both

    std::array<std::unique_ptr<EQFilter>, bandCount> mainFilters;
    std::array<std::unique_ptr<EQFilter>, bandCount> sideChainFilters; // one section, ahead of the detectors
    std::unique_ptr<wave::DelayFilter> inputDelay;                     // both late by the latency, while there is one
    std::unique_ptr<wave::DelayFilter> sideChainDelay;
    std::array<BandChain, 2> chains; // left and right before mid and side
    VolumeFilter autoGainVolume;
    SoloPath solo;
    Mixer channelMixer;                          // the chains' signal, the solo path
    std::unique_ptr<LevelPanConverter> levelPan; // of a left or single channel, for both of a pair
    VolumeFilter outputVolume;
    LevelMeter outputMeter;
    bool fadingBand = false;
    bool soloEncoded = false; // the solo path hears mid or side, as the last soloed band does
};
