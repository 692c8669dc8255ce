#include "framework/zelk/ZelkProcessor.h"

#include "eq/EQFilter.h"
#include "framework/zelk/KernelGrid.h"
#include "framework/zelk/ZelkBand.h"
#include "framework/zelk/ZelkChannel.h"
#include "midi/ProcessorMidiInput.h"

#include <algorithm>
#include <utility>

namespace {

constexpr float soloCeilingDb = -6.0f;
constexpr float highestSolo = 31.622776f; // 30 dB

} // namespace

ZelkProcessor::ZelkProcessor(chl::Layout wanted)
    : GenericPluginProcessor(static_cast<int>(wanted), chl::channelCount(wanted))
    , ZelkParameters(*static_cast<GenericPluginBase*>(this))
    , soloMixer(environment(), 0, Mixer::Operation::largestMagnitude)
    , soloLimiter(environment())
    , analyzerBuffer(environment(), channelCount()) {
    init();
    initParameters();
    analyzerBuffer.setUp();
    for (std::size_t index = 0; index < audioSources.size(); ++index)
        audioSources[index] = &analyzerBuffer.measurement(index);
    loudness::fillFrequencies(autoGainFrequencies, environment().sampleRate);
    for (std::int32_t index = 0; index < bandCount; ++index)
        bandObjects[static_cast<std::size_t>(index)] = std::make_unique<Band>(*this, index);
    soloMixer.weightMaximum = highestSolo;
    soloLimiter.input = &soloMixer;
    soloLimiter.ceiling = soloCeilingDb;

    for (std::size_t index = 0; index < channelCount(); ++index) {
        ZelkChannel* const left = index > 0 && isLeftOfPair(wanted, index - 1) ? zelkChannels[index - 1] : nullptr;
        auto channel = std::make_unique<ZelkChannel>(*this, index, chl::speakerCode(wanted, index), left);
        soloMixer.addInput(&channel->soloSignal(), 0.0f);
        weightSum += channel->autoGainWeight;
        zelkChannels.push_back(channel.get());
        channels.push_back(std::move(channel));
    }
    offerLevels();
    connectAnalyzer();
    renewLatency();
    for (std::int32_t id = 0; id < parameterCount(); ++id)
        parameter(id).notifyListeners(parameter(id).value());
    applyParameter(-1);
}

ZelkProcessor::~ZelkProcessor() = default;

std::unique_ptr<MidiMessageReceiver> ZelkProcessor::createMidiReceiver() {
    return std::make_unique<ProcessorMidiInput>(*this);
}

std::unique_ptr<EQFilter> ZelkProcessor::makeMainFilter(std::int32_t bandIndex) {
    constexpr std::int32_t everySample = 1; // a dynamic gain may ask for a row each
    auto filter = mainQueueOwner != nullptr
                      ? std::make_unique<EQFilter>(environment(), BiquadProcessor::maxSections, *mainQueueOwner)
                      : std::make_unique<EQFilter>(environment(), BiquadProcessor::maxSections, everySample);
    if (mainQueueOwner == nullptr)
        mainQueueOwner = filter.get();
    EQParameterSet& parameters = bands.set(bandIndex);
    parameters.frequency.addListener(&filter->frequency);
    parameters.q.addListener(&filter->q);
    parameters.shape.addListener(&filter->shape);
    parameters.slope.addListener(&filter->slope);
    filter->gain.connect(&band(bandIndex).gainSum);
    return filter;
}

std::unique_ptr<EQFilter> ZelkProcessor::makeSideChainFilter() {
    constexpr std::int32_t granularity = 4; // samples
    auto filter = sideChainQueueOwner != nullptr ? std::make_unique<EQFilter>(environment(), 1, *sideChainQueueOwner)
                                                 : std::make_unique<EQFilter>(environment(), 1, granularity);
    if (sideChainQueueOwner == nullptr)
        sideChainQueueOwner = filter.get();
    filter->coefficientCalculation = CoefficientCalculation::bilinearCompensated;
    return filter;
}

void ZelkProcessor::setSoloInput(std::size_t channel, float weight) noexcept REALTIME {
    soloMixer.weight(channel).assign(weight);
}

// What displays see

void ZelkProcessor::offerLevels() {
    std::size_t slot = 0;
    for (const std::unique_ptr<Band>& one : bandObjects)
        levelSources[slot++] = &one->dynamics.gainMeter;
    for (const std::unique_ptr<Band>& one : bandObjects)
        levelSources[slot++] = &one->dynamics.thresholdMeter;
    for (ZelkChannel* const channel : zelkChannels)
        levelSources[slot++] = &channel->meter();
}

void ZelkProcessor::connectAnalyzer() noexcept REALTIME {
    enum : std::size_t { before, behind, sideChain };
    for (ZelkChannel* const channel : zelkChannels) {
        analyzerBuffer.measurement(before).setInput(channel->index, &channel->delayedInput());
        analyzerBuffer.measurement(behind).setInput(channel->index, channel->output);
        analyzerBuffer.measurement(sideChain).setInput(channel->index, &channel->delayedSideChain());
    }
}

// Rate and latency

void ZelkProcessor::beforeChange(std::int32_t id) noexcept {
    if (movesLatency(id))
        renewLatency();
}

void ZelkProcessor::sampleRateChanged() {
    GenericPluginProcessor::sampleRateChanged();
    loudness::fillFrequencies(autoGainFrequencies, sampleRate());
    rebuildKernels();
    updateDesigns(-1, false);
    renewLatency();
}

void ZelkProcessor::renewLatency() noexcept REALTIME {
    setLatency(latencyAt(static_cast<double>(sampleRate())));
}

// The graph

void ZelkProcessor::runGraph(std::span<const float*> outputs, std::int32_t count) noexcept REALTIME {
    rewireFading();
    if (isLinear()) {
        for (const std::unique_ptr<Band>& one : bandObjects)
            if (one->dynamics.isActive())
                one->pullDynamicGain(count);
    }
    GenericPluginProcessor::runGraph(outputs, count);
}

bool ZelkProcessor::isFading(std::int32_t bandIndex) noexcept REALTIME {
    return std::any_of(zelkChannels.begin(), zelkChannels.end(), [bandIndex](ZelkChannel* channel) {
        return !channel->mainFilter(bandIndex).getProcessor().isOff();
    });
}

// A batch on another thread may move a placement at any time. All channels are wired by one look at it: else a filter
// could stand before the converters on one channel of a pair and behind them on the other, and the signal would go in a
// ring.
ChainLayout ZelkProcessor::countChains() noexcept REALTIME {
    const bool linear = isLinear(); // its filters are not heard
    ChainDemand demand;
    for (std::int32_t index = 0; index < bandCount; ++index) {
        StereoPlacement& placement = wiredPlacements[static_cast<std::size_t>(index)];
        placement = bands.set(index).stereoPlacement.get();
        if (bands.set(index).used.get() || (!linear && isFading(index)))
            demand.add(placement);
    }
    return demand.layout();
}

void ZelkProcessor::rewireChannels() noexcept REALTIME {
    const ChainLayout now = countChains();
    if (!(now == wiredChains)) {
        wiredChains = now;
        updateDelays();
    }
    for (ZelkChannel* const channel : zelkChannels)
        channel->gatherBands();
    for (ZelkChannel* const channel : zelkChannels)
        channel->connect();
}

// Bands that were released leave the chains when they have faded out.
void ZelkProcessor::rewireFading() noexcept REALTIME {
    const bool due = std::any_of(zelkChannels.begin(), zelkChannels.end(),
                                 [](const ZelkChannel* channel) { return channel->hasFadingBand(); });
    if (due)
        rewireChannels();
}
