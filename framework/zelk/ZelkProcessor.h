// The audio side of the product: the graph of all channels and all bands, and how every parameter reaches it.
// Threads: audio, except construction (main).
#pragma once

#include "analysis/RealTimeAudioBuffer.h"
#include "base/Realtime.h"
#include "eq/DiscreteFrequencyResponseSource.h"
#include "framework/GenericPluginProcessor.h"
#include "framework/chl/Layouts.h"
#include "framework/zelk/BandPlacement.h"
#include "framework/zelk/LoudnessCurve.h"
#include "framework/zelk/ZelkParameters.h"
#include "wave/Mixer.h"
#include "wave/SafetyLimiter.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

class EQFilter;
struct KernelGrid;

class ZelkProcessor final : public GenericPluginProcessor, public ZelkParameters {
public:
    class Band;
    class BandChain;
    class BandDynamics;
    class ChainMagnitude;
    class ChannelPair;
    class ZelkChannel;

    explicit ZelkProcessor(chl::Layout wanted);
    ~ZelkProcessor() override;

    std::int32_t silenceTail() const noexcept REALTIME override { return 8192; }

    // For the bands and channels.
    Band& band(std::int32_t index) noexcept REALTIME { return *bandObjects[static_cast<std::size_t>(index)]; }
    const ChainLayout& chainLayout() const noexcept REALTIME { return wiredChains; }    // as the channels are wired
    [[nodiscard]] bool inMidSideChain(std::int32_t bandIndex) const noexcept REALTIME { // as they are wired
        return ::inMidSideChain(wiredPlacements[static_cast<std::size_t>(bandIndex)], wiredChains);
    }
    const loudness::Curve& curveFrequencies() const noexcept REALTIME { return autoGainFrequencies; }
    std::int32_t soloBand() const noexcept REALTIME { return soloedBand; } // -1: none
    wave::Producer& soloGainSource() noexcept REALTIME { return soloLimiter; }
    void setSoloInput(std::size_t channel, float weight) noexcept REALTIME; // how the limiter hears a channel

    KernelGrid* kernelGrid() const noexcept REALTIME { return grid.get(); } // null in Zero Latency
    [[nodiscard]] bool isLinear() const noexcept REALTIME; // the graph as it stands; the parameter may be ahead of it
    DiscreteFrequencyResponseSource::Mapping& noGrid() noexcept { return emptyMapping; } // of chains without a kernel
    float kernelGain() const noexcept REALTIME {
        return autoGainFactor;
    } // that part of the auto gain which kernels carry
    float sampleRate() noexcept REALTIME { return environment().sampleRate; }

    // [main] Filters that follow a band's parameters, and those of its detectors. All of a kind share the memory in
    // which rows are queued.
    std::unique_ptr<EQFilter> makeMainFilter(std::int32_t bandIndex);
    std::unique_ptr<EQFilter> makeSideChainFilter();

protected:
    void initProcess() override;
    std::unique_ptr<MidiMessageReceiver> createMidiReceiver() override;
    void beforeChange(std::int32_t id) noexcept override;
    void applyParameter(std::int32_t id) noexcept REALTIME override;
    void runGraph(std::span<const float*> outputs, std::int32_t count) noexcept REALTIME override;
    void sampleRateChanged() override;

private:
    // What a change asks of the graph.
    struct Due {
        bool kernels = false;
        bool solo = false;
        bool wiring = false;
        bool chains = false; // their order of filters and responses
    };

    void noteBandChange(std::int32_t index, std::int32_t id, Due& due) noexcept REALTIME;
    std::int32_t scanSolo() const noexcept REALTIME;
    void renewLatency() noexcept REALTIME;
    void settleWiring(const Due& due) noexcept REALTIME;
    void rebuildKernels() noexcept REALTIME;
    void updateDelays() noexcept REALTIME;
    void offerLevels();                       // to the displays
    void connectAnalyzer() noexcept REALTIME; // to what is lined up with the output now
    void rewireChannels() noexcept REALTIME;  // with new delays when the number of chains changes
    void rewireFading() noexcept REALTIME;
    ChainLayout countChains() noexcept REALTIME; // of the bands in use and those that still fade out
    bool isFading(std::int32_t bandIndex) noexcept REALTIME;

    bool updateDynamics(std::int32_t index, std::int32_t id, bool modeChanged) noexcept REALTIME; // true: wiring is due
    void configureDynamics(std::int32_t index) noexcept REALTIME;
    void updateDesigns(std::int32_t id, bool modeChanged) noexcept REALTIME;
    float computeAutoGain() noexcept REALTIME;
    bool bandsAreAlikeEverywhere() const noexcept REALTIME;
    float compensationOfAll() noexcept REALTIME;
    float compensationOfChannels() noexcept REALTIME;

    loudness::Curve autoGainFrequencies; // radians per sample
    loudness::Curve autoGainWork;
    float weightSum = 0.0f; // of all channels
    std::array<std::unique_ptr<Band>, bandCount> bandObjects;
    Mixer soloMixer; // the loudest channel of the solo path
    SafetyLimiter soloLimiter;
    RealTimeAudioBuffer analyzerBuffer;     // before the bands, behind them, side chain
    std::vector<ZelkChannel*> zelkChannels; // owned by the base
    EQFilter* mainQueueOwner = nullptr;     // the first main filter
    EQFilter* sideChainQueueOwner = nullptr;
    DiscreteFrequencyResponseSource::Mapping emptyMapping{false, 20.0f, 20000.0f, 255};
    std::unique_ptr<KernelGrid> grid;
    ChainLayout wiredChains;
    std::array<StereoPlacement, bandCount> wiredPlacements{}; // of the same look at the parameters
    std::int32_t soloedBand = -1;
    float autoGainFactor = 1.0f;
};
