#include "framework/zelk/BandDynamics.h"

#include "base/FloatTolerance.h"
#include "eq/BandDesign.h"
#include "framework/zelk/EQParameterSet.h"
#include "framework/zelk/EQParameterShapes.h"
#include "platform/Clock.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float lowestDetectorHz = 20.0f;
constexpr float highestDetectorHz = 30000.0f;
constexpr float highestShelfHz = 10000.0f; // a shelf above listens from here on
constexpr float highestDetectorQ = 10.0f;

enum DelayPlace : std::size_t { detectorDelay, thresholdDelay, gainDelay };

} // namespace

ZelkProcessor::BandDynamics::BandDynamics(ZelkProcessor& processor, const EQParameterSet& parametersOfBand)
    : detector(processor.environment(), static_cast<int>(processor.channelCount()), Mixer::Operation::largestMagnitude)
    , compander(processor.environment())
    , gainMeter(processor.environment(), createIntervalTimer())
    , thresholdMeter(processor.environment(), createIntervalTimer())
    , parameters(parametersOfBand)
    , environment(processor.environment()) {
    gainMeter.inputDomain = LevelDomain::decibels;
    thresholdMeter.minimum = -120.0f;
    thresholdMeter.maximum = 0.0f;
    thresholdMeter.peakFall = 60.0f;
    thresholdMeter.levelFall = 70.0f;
    compander.input = &detector;
    for (LevelMeter* const meter : {&gainMeter, &thresholdMeter}) {
        meter->setSchedule(wave::Producer::Schedule::middle);
        meter->setActive(false);
    }
    gainMeter.input = &compander;
    thresholdMeter.input = &detector;
    setPolarity(true);
}

bool ZelkProcessor::BandDynamics::isWanted() const noexcept REALTIME {
    return bandIsActive(parameters) && parameters.dynamicsEnabled.get() &&
           AnalogFilterPrototype::hasGain(parameters.shape.get()) && !nearlyZero(parameters.dynamicRange.get());
}

bool ZelkProcessor::BandDynamics::setActive(bool wanted) noexcept REALTIME {
    if (wanted == active)
        return false;
    active = wanted;
    gainMeter.setActive(wanted);
    thresholdMeter.setActive(wanted);
    for (const std::unique_ptr<wave::DelayFilter>& delay : delays)
        if (delay != nullptr)
            delay->setActive(wanted);
    return true;
}

bool ZelkProcessor::BandDynamics::updateAutoThreshold() noexcept REALTIME {
    const double threshold = parameters.threshold.unitFromValue(parameters.threshold.get());
    const bool wanted = active && threshold > ThresholdParameterUnit::autoAbove;
    if (wanted == autoThreshold)
        return false;
    autoThreshold = wanted;
    return true;
}

ZelkProcessor::BandDynamics::Region ZelkProcessor::BandDynamics::configure() noexcept REALTIME {
    const float q = static_cast<float>(parameters.q.unitFromValue(parameters.q.get()));
    const float hz = std::exp2(parameters.frequency.get());
    Region region{FilterShape::bandPass, parameters.frequency.get(), std::min(q * 1.5f, highestDetectorQ)};
    BandEdges edges = bandEdges(q, hz, parameters.shape.get(), FilterSlope::db12);
    if (parameters.shape.get() == FilterShape::lowShelf) {
        region.shape = FilterShape::lowPass;
        edges = {lowestDetectorHz, hz};
    } else if (parameters.shape.get() == FilterShape::highShelf) {
        const float from = std::min(hz, highestShelfHz);
        region.shape = FilterShape::highPass;
        region.frequency = std::log2(from);
        edges = {from, highestDetectorHz};
    }
    trustedRealtime([&] {
        compander.lowEdge = std::log2(edges.low);
        compander.highEdge = std::log2(edges.high);
        compander.autoThreshold = autoThreshold;
    });
    const float range = parameters.dynamicRange.get();
    const auto fixed = static_cast<float>(parameters.threshold.unitFromValue(parameters.threshold.get()));
    compander.threshold.assign(autoThreshold ? -std::fabs(range) : fixed);
    // Wide regions and large ranges begin softly.
    const float octaves = std::clamp(compander.highEdge - compander.lowEdge, 3.0f, 8.0f);
    compander.knee.assign((octaves - 3.0f + 1.0f) * 3.0f + range * range * 0.046666674f); // 0.14 / 3
    setPolarity(range > 0.0f);
    return region;
}

void ZelkProcessor::BandDynamics::setPolarity(bool upward) noexcept REALTIME {
    constexpr float scale = 30.0f; // dB
    trustedRealtime([&] {
        gainMeter.maximum = upward ? scale : 0.0f;
        gainMeter.minimum = upward ? 0.0f : -scale;
        gainMeter.detection = upward ? LevelSource::Detection::largest : LevelSource::Detection::smallest;
    });
}

void ZelkProcessor::BandDynamics::setDelays(const Delays& wanted) noexcept {
    renewDelay(detectorDelay, wanted.detector, detector);
    compander.input = &behind(detectorDelay, detector);
    renewDelay(thresholdDelay, wanted.meters, *compander.input);
    renewDelay(gainDelay, wanted.meters, compander);
    thresholdMeter.input = &behind(thresholdDelay, *compander.input);
    gainMeter.input = &behind(gainDelay, compander);
}

void ZelkProcessor::BandDynamics::renewDelay(std::size_t place, std::int32_t samples, wave::Producer& source) noexcept {
    std::unique_ptr<wave::DelayFilter>& delay = delays[place];
    const std::int32_t present = delay != nullptr ? delay->delay.getDelay() : 0;
    if (std::max(samples, 0) != present) {
        delay.reset();
        if (samples > 0) {
            delay = std::make_unique<wave::DelayFilter>(environment, samples);
            delay->setActive(active);
        }
    }
    if (delay != nullptr)
        delay->input = &source;
}

wave::Producer& ZelkProcessor::BandDynamics::behind(std::size_t place, wave::Producer& source) noexcept REALTIME {
    return delays[place] != nullptr ? static_cast<wave::Producer&>(*delays[place]) : source;
}
