// Keeps the loudness of the result near that of the input, by one factor that the curves of all bands give.
#include "framework/zelk/ZelkBand.h"
#include "framework/zelk/ZelkChannel.h"
#include "framework/zelk/ZelkProcessor.h"

#include <algorithm>
#include <cmath>

namespace {

loudness::Weights weights; // of the process: filled by its first instance, constant from then on

void multiply(loudness::Curve& product, const loudness::Curve& factor) noexcept {
    for (std::size_t i = 0; i < loudness::points; ++i)
        product.values[i] *= factor.values[i];
}

float compensation(const loudness::Curve& product) noexcept {
    return 1.0f / std::max(loudness::lowest, loudness::meanGain(product, weights));
}

} // namespace

void ZelkProcessor::initProcess() {
    weights = loudness::makeWeights();
}

float ZelkProcessor::computeAutoGain() noexcept REALTIME {
    if (!autoGain.get())
        return 1.0f;
    return channelCount() == 1 || bandsAreAlikeEverywhere() ? compensationOfAll() : compensationOfChannels();
}

// No band sets channels apart.
bool ZelkProcessor::bandsAreAlikeEverywhere() const noexcept REALTIME {
    for (std::int32_t index = 0; index < bandCount; ++index) {
        const EQParameterSet& parameters = bands.set(index);
        if (bandIsActive(parameters) && (parameters.stereoPlacement.get() != StereoPlacement::stereo ||
                                         parameters.speakers.get() > chl::SpeakerSet::allButLfe))
            return false;
    }
    return true;
}

float ZelkProcessor::compensationOfAll() noexcept REALTIME {
    autoGainWork.values.fill(1.0f);
    for (std::int32_t index = 0; index < bandCount; ++index) {
        if (bandIsActive(bands.set(index)))
            multiply(autoGainWork, band(index).squaredMagnitudes);
    }
    return compensation(autoGainWork);
}

// The weighted geometric mean over channels, for each of the two chains by itself.
float ZelkProcessor::compensationOfChannels() noexcept REALTIME {
    double exponent = 0.0;
    for (std::size_t chain = 0; chain < 2; ++chain) {
        for (const ZelkChannel* const channel : zelkChannels) {
            if (channel->autoGainWeight == 0.0f)
                continue;
            autoGainWork.values.fill(1.0f);
            for (const std::int32_t index : channel->chainBands(chain)) {
                if (bandOnChannel(bands.set(index), channel->speakerCode))
                    multiply(autoGainWork, band(index).squaredMagnitudes);
            }
            exponent += std::log(static_cast<double>(compensation(autoGainWork))) *
                        static_cast<double>(channel->autoGainWeight / weightSum);
        }
    }
    return static_cast<float>(std::exp(exponent));
}
