#include "framework/zelk/ZelkChannel.h"

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
    , chains{BandChain(*this), BandChain(*this)}
    , autoGainVolume(processor.environment())
    , solo(processor.environment())
    , channelMixer(processor.environment())
    , outputVolume(processor.environment())
    , outputMeter(processor.environment(), createIntervalTimer()) {
    for (std::int32_t band = 0; band < bandCount; ++band)
        mainFilters[static_cast<std::size_t>(band)] = zelk.makeMainFilter(band);
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
    }
}

void ZelkProcessor::ZelkChannel::enableFilter(std::int32_t band) noexcept REALTIME {
    mainFilter(band).enabled = bandOnChannel(zelk.bands.set(band), speakerCode);
}

void ZelkProcessor::ZelkChannel::setAutoGain(float linear) noexcept REALTIME {
    autoGainVolume.gain.assign(linear);
}

// Wiring

void ZelkProcessor::ZelkChannel::updateDelay(std::int32_t samples) noexcept REALTIME {
    const RealtimePermit permit{"input delay replaced"};
    inputDelay.reset();
    if (samples > 0) {
        inputDelay = std::make_unique<wave::DelayFilter>(zelk.environment(), samples);
        inputDelay->input = &mainInput;
    }
}

wave::Producer& ZelkProcessor::ZelkChannel::delayedInput() noexcept REALTIME {
    return inputDelay != nullptr ? static_cast<wave::Producer&>(*inputDelay) : mainInput;
}

// A band without effect on this channel stays out of its chains, once its filter has faded out.
void ZelkProcessor::ZelkChannel::gatherBands() noexcept REALTIME {
    for (BandChain& chain : chains)
        chain.clear();
    fadingBand = false;
    const ChainLayout& layout = zelk.chainLayout();
    for (std::int32_t band = 0; band < bandCount; ++band) {
        const EQFilter& filter = mainFilter(band);
        const bool fading = !filter.enabled && !filter.getProcessor().isOff();
        fadingBand = fadingBand || fading;
        if (filter.enabled || fading)
            chains[bandInMidSideChain(zelk.bands.set(band), layout) && layout.leftRight ? 1 : 0].add(band);
    }
}

void ZelkProcessor::ZelkChannel::connect() noexcept REALTIME {
    const ChainLayout& layout = zelk.chainLayout();
    wave::Producer* signal = &delayedInput();
    if (layout.leftRight)
        signal = &chains[0].connect(*signal);
    if (layout.midSide) {
        BandChain& chain = chains[layout.leftRight ? 1 : 0];
        if (pair == nullptr) {
            signal = &chain.connect(*signal);
        } else {
            // A pair on which no band works is not converted: what goes through it stays as it is, bit by bit.
            pair->chainEncoder.inputs[side()] = signal;
            pair->chainDecoder.inputs[side()] = &chain.connect(pair->chainEncoder.output(side()));
            const ZelkChannel& other = leftOfPair != nullptr ? *leftOfPair : *rightOfPair;
            if (!chain.bands().empty() || !other.chains[layout.leftRight ? 1 : 0].bands().empty())
                signal = &pair->chainDecoder.output(side());
        }
    }
    autoGainVolume.input = signal;
    wireSolo();
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

void ZelkProcessor::ZelkChannel::wireSolo() noexcept REALTIME {
    const EQParameterSet* const band = soloedBand();
    if (band == nullptr)
        return;
    const bool encoded = pair != nullptr && bandInMidSideChain(*band, zelk.chainLayout());
    solo.setInput(encoded ? static_cast<wave::Producer*>(&pair->sideEncoder.output(side())) : &delayedInput());
    channelMixer.setSource(soloEntry,
                           encoded ? static_cast<wave::Producer*>(&pair->soloDecoder.output(side())) : &solo.output());
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
