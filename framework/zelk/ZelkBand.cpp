#include "framework/zelk/ZelkBand.h"

#include "eq/BandDesign.h"
#include "framework/zelk/BandPlacement.h"
#include "framework/zelk/EQParameterSet.h"

#include <algorithm>
#include <cmath>
#include <numbers>

ZelkProcessor::Band::Band(ZelkProcessor& processor, std::int32_t index)
    : parameters(processor.bands.set(index))
    , extension(processor.extensions.set(index))
    , gainScale(this, 1.0f)
    , gain(processor.environment(), 0.0f, -30.0f, 30.0f)
    , gainSum(processor.environment())
    , owner(processor) {
    gainSum.weightMaximum = 2.0f;
    gainSum.addInput(&gain, 1.0f);
    processor.bands.set(index).gain.addListener(&gain);
    processor.gainScale.addListener(&gainScale);
}

void ZelkProcessor::Band::propertyChanged(AbstractProperty&) noexcept {
    gainSum.weight(0).assign(gainScale);
}

bool ZelkProcessor::Band::concernedBy(std::int32_t id) const noexcept REALTIME {
    const std::int32_t first = parameters.used.id();
    return id == -1 || (id >= first && id < first + static_cast<std::int32_t>(EQParameterSet::size)) ||
           id == extension.externalSideChain.id();
}

void ZelkProcessor::Band::updateDesign(float sampleRate) noexcept REALTIME {
    if (!bandIsActive(parameters))
        return;
    const float gainDb = std::clamp(parameters.gain.get() * owner.gainScale.get(), -30.0f, 30.0f);
    const double hz = std::exp2(static_cast<double>(parameters.frequency.get()));
    const double radiansPerHz = 2.0 * std::numbers::pi / static_cast<double>(sampleRate);
    const auto w = static_cast<float>(hz * radiansPerHz);
    const auto q = static_cast<float>(parameters.q.unitFromValue(parameters.q.get()));
    designBand(parameters.shape.get(), parameters.slope.get(), gainDb, q, static_cast<double>(w), prototype,
               flatTiltHz * radiansPerHz);
    if (owner.autoGain.get())
        prototype.squaredMagnitudes(owner.curveFrequencies().values.data(), squaredMagnitudes.values.data(),
                                    loudness::points);
}
