#include "framework/zelk/ZelkChannel.h"

#include "base/FloatTolerance.h"
#include "framework/zelk/BandPlacement.h"
#include "framework/zelk/ZelkBand.h"
#include "platform/Clock.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr std::size_t mainEntry = 0; // of the channel mixer
constexpr std::size_t soloEntry = 1;
constexpr float highestSolo = 31.622776f; // 30 dB

float dbToGain(float db) noexcept {
    return std::exp(db * 0.11512925f); // ln(10) / 20
}

// Sound from the side adds to the loudness, sound below the speech range hardly.
float weightOf(chl::SpeakerCode speaker) noexcept {
    if ((speaker & chl::lfeBit) != 0)
        return 0.0f;
    const chl::SpeakerCode azimuth = speaker & chl::azimuthBits;
    return azimuth >= 60 && azimuth <= 120 ? 1.41f : 1.0f;
}

} // namespace

ZelkProcessor::ZelkChannel::ZelkChannel(ZelkProcessor& processor, std::size_t channelIndex, chl::SpeakerCode speaker,
                                        ZelkChannel* left)
    : Channel(processor, channelIndex, speaker)
    , autoGainWeight(weightOf(speaker))
    , zelk(processor)
    , leftOfPair(left)
    , chains{BandChain(processor, *this, true), BandChain(processor, *this, false)}
    , autoGainVolume(processor.environment())
    , solo(processor.environment())
    , channelMixer(processor.environment())
    , outputVolume(processor.environment())
    , outputMeter(processor.environment(), createIntervalTimer()) {
    for (std::int32_t band = 0; band < bandCount; ++band) {
        mainFilters[static_cast<std::size_t>(band)] = zelk.makeMainFilter(band);
        sideChainFilters[static_cast<std::size_t>(band)] = zelk.makeSideChainFilter();
    }
    buildOutput();
    if (left != nullptr)
        joinPair(*left);
}

ZelkProcessor::ZelkChannel::~ZelkChannel() = default;

void ZelkProcessor::ZelkChannel::buildOutput() {
    autoGainVolume.input = &mainInput;
    autoGainVolume.gain.parameter().setRange(loudness::lowest, loudness::highest);
    autoGainVolume.gain.parameter().minimumRamp = 10.0f;
    channelMixer.addInput(&autoGainVolume, 1.0f);
    channelMixer.weightMaximum = highestSolo;
    channelMixer.addInput(&solo.output(), 0.0f);
    solo.setInput(&mainInput);

    outputVolume.input = &channelMixer;
    output = &outputVolume;
    if (leftOfPair == nullptr) {
        levelPan = std::make_unique<LevelPanConverter>(zelk.environment());
        zelk.outputLevel.addListener(&levelPan->level);
        zelk.outputInvertPhase.addListener(&levelPan->invert);
        if (zelk.channelCount() == 2)
            zelk.outputPan.addListener(&levelPan->pan);
        outputVolume.gain.connect(&levelPan->output(0));
    }

    outputMeter.minimum = -180.0f;
    outputMeter.maximum = 4.0f;
    outputMeter.holdOverload = false;
    outputMeter.levelHold = 0.05f;
    outputMeter.levelFall = 40.0f;
    outputMeter.input = output;
    outputMeter.setSchedule(wave::Producer::Schedule::middle);
}

// A right channel comes into being and finds its left one ready.
void ZelkProcessor::ZelkChannel::joinPair(ZelkChannel& left) {
    left.ownPair = std::make_unique<ChannelPair>(zelk.environment());
    pair = left.pair = left.ownPair.get();
    left.rightOfPair = this;
    for (std::size_t chain = 0; chain < chains.size(); ++chain) {
        chains[chain].setPartner(left.chains[chain], BandChain::Role::follows);
        left.chains[chain].setPartner(chains[chain], BandChain::Role::leads);
    }
    outputVolume.gain.connect(&left.levelPan->output(1));
    ZelkChannel* const both[] = {&left, this};
    for (std::size_t place = 0; place < 2; ++place) {
        ZelkChannel& channel = *both[place];
        pair->sideEncoder.inputs[place] = &channel.mainInput;
        pair->soloDecoder.inputs[place] = &channel.solo.output();
        pair->outputEncoder.inputs[place] = &channel.channelMixer;
        channel.outputVolume.input = &pair->outputEncoder.output(place);
        pair->outputDecoder.inputs[place] = &channel.outputVolume;
        channel.output = &pair->outputDecoder.output(place);
        channel.outputMeter.input = channel.output;
    }
    for (std::int32_t band = 0; band < bandCount; ++band) {
        mainFilter(band).setPartner(&left.mainFilter(band));
        mainFilter(band).setLink(true);
        sideChainFilter(band).setPartner(&left.sideChainFilter(band));
        sideChainFilter(band).setLink(true);
    }
}

void ZelkProcessor::ZelkChannel::enableFilters(std::int32_t band) noexcept REALTIME {
    const bool works = bandOnChannel(zelk.bands.set(band), speakerCode);
    trustedRealtime([&] {
        mainFilter(band).enabled = works;
        sideChainFilter(band).enabled = works;
    });
}

void ZelkProcessor::ZelkChannel::followDynamics(std::int32_t band) noexcept REALTIME {
    trustedRealtime([&] { mainFilter(band).gainModulated = zelk.band(band).dynamics.isActive(); });
    for (BandChain& chain : chains)
        chain.updateDynamic();
}

void ZelkProcessor::ZelkChannel::markKernelsDirty() noexcept REALTIME {
    for (BandChain& chain : chains)
        chain.markDirty();
}

void ZelkProcessor::ZelkChannel::setAutoGain(float linear) noexcept REALTIME {
    autoGainVolume.gain.assign(linear);
}

// Wiring

void ZelkProcessor::ZelkChannel::updateDelays(std::int32_t latency) noexcept REALTIME {
    const RealtimePermit permit{"delays of a channel"};
    trustedRealtime([this, latency] {
        renewDelay(inputDelay, latency, mainInput);
        renewDelay(sideChainDelay, latency, connectedSideChain);
        if (pair == nullptr)
            return;
        if (latency <= 0)
            pair->delayedEncoder.reset();
        else if (pair->delayedEncoder == nullptr)
            pair->delayedEncoder =
                std::make_unique<MidSideConverter>(zelk.environment(), MidSideConverter::Conversion::encode);
        if (pair->delayedEncoder != nullptr)
            pair->delayedEncoder->inputs[side()] = inputDelay.get();
    });
}

// Fed in every cycle, so that what is read of it later is whole.
void ZelkProcessor::ZelkChannel::renewDelay(std::unique_ptr<wave::DelayFilter>& delay, std::int32_t samples,
                                            wave::Producer& source) {
    if (std::max(samples, 0) == (delay != nullptr ? delay->delay.getDelay() : 0))
        return;
    delay.reset();
    if (samples <= 0)
        return;
    delay = std::make_unique<wave::DelayFilter>(zelk.environment(), samples);
    delay->input = &source;
    delay->setSchedule(wave::Producer::Schedule::tail);
}

wave::Producer& ZelkProcessor::ZelkChannel::delayedInput() noexcept REALTIME {
    return inputDelay != nullptr ? static_cast<wave::Producer&>(*inputDelay) : mainInput;
}

wave::Producer& ZelkProcessor::ZelkChannel::delayedSideChain() noexcept REALTIME {
    return sideChainDelay != nullptr ? static_cast<wave::Producer&>(*sideChainDelay) : connectedSideChain;
}

// A band without effect on this channel stays out of its chains, once its filter has faded out. In Linear Phase filters
// are not heard, so nothing fades.
void ZelkProcessor::ZelkChannel::gatherBands() noexcept REALTIME {
    for (BandChain& chain : chains)
        chain.clear();
    fadingBand = false;
    const ChainLayout& layout = zelk.chainLayout();
    const bool linear = zelk.isLinear();
    for (std::int32_t band = 0; band < bandCount; ++band) {
        const EQFilter& filter = mainFilter(band);
        const bool fading = !linear && !filter.enabled && !filter.getProcessor().isOff();
        fadingBand = fadingBand || fading;
        if (filter.enabled || fading)
            chains[zelk.inMidSideChain(band) && layout.leftRight ? 1 : 0].add(band);
    }
}

void ZelkProcessor::ZelkChannel::connect() noexcept REALTIME {
    for (std::size_t chain = 0; chain < chains.size(); ++chain)
        chains[chain].renewConvolver(static_cast<std::int32_t>(chain) < zelk.chainLayout().count());
    connectChains();
    for (std::int32_t band = 0; band < bandCount; ++band)
        if (zelk.bands.set(band).used.get())
            connectDetector(band);
    wireSolo();
}

void ZelkProcessor::ZelkChannel::connectChains() noexcept REALTIME {
    const ChainLayout& layout = zelk.chainLayout();
    wave::Producer* signal = &mainInput;
    if (layout.leftRight)
        signal = &chains[0].connect(*signal);
    if (layout.midSide) {
        const std::size_t place = layout.leftRight ? 1 : 0;
        if (pair == nullptr) {
            signal = &chains[place].connect(*signal);
        } else {
            pair->chainEncoder.inputs[side()] = signal;
            pair->chainDecoder.inputs[side()] = &chains[place].connect(pair->chainEncoder.output(side()));
            if (converts(place))
                signal = &pair->chainDecoder.output(side());
        }
    }
    autoGainVolume.input = signal;
}

// A pair on which no band works goes around the converters: what passes stays as it is, bit by bit.
bool ZelkProcessor::ZelkChannel::converts(std::size_t chain) const noexcept REALTIME {
    const ZelkChannel& other = leftOfPair != nullptr ? *leftOfPair : *rightOfPair;
    return zelk.kernelGrid() != nullptr || !chains[chain].bands().empty() || !other.chains[chain].bands().empty();
}

void ZelkProcessor::ZelkChannel::connectDetector(std::int32_t band) noexcept REALTIME {
    const EQParameterSet& parameters = zelk.bands.set(band);
    BandDynamics& dynamics = zelk.band(band).dynamics;
    if (zelk.extensions.set(band).externalSideChain.get() && !dynamics.hasAutoThreshold()) {
        dynamics.detector.setSource(index, &connectedSideChain);
        dynamics.detector.weight(index).assign(1.0f);
        return;
    }
    const bool encoded = pair != nullptr && zelk.inMidSideChain(band);
    EQFilter& filter = sideChainFilter(band);
    filter.input = encoded ? static_cast<wave::Producer*>(&pair->sideEncoder.output(side())) : &mainInput;
    dynamics.detector.setSource(index, &filter);
    dynamics.detector.weight(index).assign(bandOnChannel(parameters, speakerCode) ? 1.0f : 0.0f);
}

bool ZelkProcessor::ZelkChannel::setRegion(std::int32_t band, const BandDynamics::Region& region) noexcept REALTIME {
    EQFilter& filter = sideChainFilter(band);
    filter.q.assign(region.q);
    if (filter.shape == region.shape && nearlyEqual(filter.frequency.parameter().getTarget(), region.frequency))
        return false;
    trustedRealtime([&] { filter.shape = region.shape; });
    filter.frequency.parameter().setValue(region.frequency, 0.0f);
    filter.reset();
    return true;
}

// Solo

const EQParameterSet* ZelkProcessor::ZelkChannel::soloedBand() const noexcept REALTIME {
    return zelk.soloBand() >= 0 ? &zelk.bands.set(zelk.soloBand()) : nullptr;
}

void ZelkProcessor::ZelkChannel::parameterChanged(std::int32_t id) noexcept REALTIME {
    if (pair != nullptr && side() == 0 && (id == -1 || id == zelk.outputPanMode.id()))
        pair->setOutputMode(zelk.outputPanMode.get());
    if (soloedBand() != nullptr)
        followSoloedBand(id);
}

void ZelkProcessor::ZelkChannel::followSoloedBand(std::int32_t id) noexcept REALTIME {
    const EQParameterSet& band = *soloedBand();
    const bool placed = id == -1 || id == band.used.id() || id == band.enabled.id() ||
                        id == band.stereoPlacement.id() || id == band.speakers.id();
    const bool shaped = id == band.frequency.id() || id == band.q.id() || id == band.shape.id() ||
                        id == band.slope.id() || id == band.gain.id();
    if ((placed || shaped) && bandOnChannel(band, speakerCode))
        solo.follow(band);
    if (placed || id == zelk.soloGain.id() || id == band.shape.id() || id == band.gain.id())
        updateSoloLevels();
}

void ZelkProcessor::ZelkChannel::soloChanged() noexcept REALTIME {
    const EQParameterSet* const band = soloedBand();
    if (band != nullptr && bandOnChannel(*band, speakerCode))
        solo.follow(*band);
    updateSoloLevels();
}

// Also while no band is soloed: the path still fades out, and what it read may just have been replaced.
void ZelkProcessor::ZelkChannel::wireSolo() noexcept REALTIME {
    if (zelk.soloBand() >= 0)
        soloEncoded = pair != nullptr && zelk.inMidSideChain(zelk.soloBand());
    if (soloEncoded)
        solo.setInput(&(pair->delayedEncoder != nullptr ? *pair->delayedEncoder : pair->sideEncoder).output(side()));
    else
        solo.setInput(&delayedInput());
    channelMixer.setSource(soloEntry, soloEncoded ? static_cast<wave::Producer*>(&pair->soloDecoder.output(side()))
                                                  : &solo.output());
}

// While no band is soloed the path stays as it was, so that it fades out by its weight alone.
void ZelkProcessor::ZelkChannel::updateSoloLevels() noexcept REALTIME {
    const EQParameterSet* const band = soloedBand();
    float level = 0.0f;
    if (band != nullptr) {
        const float own = band->shape.get() == FilterShape::bell ? std::max(dbToGain(band->gain.get()), 1.0f) : 1.0f;
        level = own * dbToGain(zelk.soloGain.get());
    }
    channelMixer.weight(mainEntry).assign(band != nullptr ? 0.0f : 1.0f);
    channelMixer.weight(soloEntry).assign(level);
    const bool heard = band != nullptr && bandOnChannel(*band, speakerCode);
    zelk.setSoloInput(index, heard ? level : 0.0f);
    if (heard)
        solo.open(zelk.soloGainSource());
    else if (band != nullptr)
        solo.close();
}
