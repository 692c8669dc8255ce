#include "framework/zelk/ZelkBand.h"

#include "eq/BandDesign.h"
#include "eq/SectionCoefficients.h"
#include "framework/zelk/BandPlacement.h"
#include "framework/zelk/EQParameterSet.h"
#include "framework/zelk/KernelGrid.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

constexpr std::size_t gainEntry = 0; // of the sum
constexpr std::size_t companderEntry = 1;

} // namespace

ZelkProcessor::Band::Band(ZelkProcessor& processor, std::int32_t index)
    : parameters(processor.bands.set(index))
    , extension(processor.extensions.set(index))
    , gainScale(this, 1.0f)
    , gain(processor.environment(), 0.0f, -maxGainDb, maxGainDb)
    , dynamics(processor, parameters)
    , gainSum(processor.environment())
    , owner(processor) {
    gainSum.weightMaximum = 2.0f;
    gainSum.addInput(&gain, 1.0f);
    gainSum.addInput(&dynamics.compander, 0.0f);
    processor.bands.set(index).gain.addListener(&gain);
    processor.bands.set(index).dynamicRange.addListener(&dynamics.compander.range);
    processor.gainScale.addListener(&gainScale);
}

bool ZelkProcessor::Band::concernedBy(std::int32_t id) const noexcept REALTIME {
    const std::int32_t first = parameters.used.id();
    return id == -1 || (id >= first && id < first + static_cast<std::int32_t>(EQParameterSet::size)) ||
           id == extension.externalSideChain.id();
}

bool ZelkProcessor::Band::isElliptic() const noexcept REALTIME {
    return isBrickwall(parameters.shape.get(), parameters.slope.get());
}

void ZelkProcessor::Band::propertyChanged(AbstractProperty&) noexcept {
    updateWeights();
}

void ZelkProcessor::Band::setDynamic(bool wanted) noexcept REALTIME {
    if (!dynamics.setActive(wanted))
        return;
    updateWeights();
    kernelOffset = 0.0f;
}

void ZelkProcessor::Band::updateWeights() noexcept REALTIME {
    gainSum.weight(gainEntry).assign(gainScale);
    gainSum.weight(companderEntry).assign(dynamics.isActive() ? gainScale : 0.0f);
}

void ZelkProcessor::Band::pullDynamicGain(std::int32_t count) noexcept REALTIME {
    dynamicGain = &dynamics.compander.pull(count);
}

void ZelkProcessor::Band::createResponses() {
    analogResponse.reset();
    biquadResponse.reset();
    magnitudeResponse.reset();
    dynamicGain = nullptr;
    kernelOffset = 0.0f;
    KernelGrid* const ownersGrid = owner.kernelGrid();
    if (ownersGrid == nullptr)
        return;
    if (ownersGrid->mode == ProcessingMode::naturalPhase) {
        analogResponse = std::make_unique<EQAnalogResponse>(ownersGrid->mapping, ownersGrid->frequencies, prototype);
        biquadResponse = std::make_unique<EQBiquadResponse>(ownersGrid->mapping, ownersGrid->frequencies, prototype);
        analogResponse->resize(static_cast<std::size_t>(ownersGrid->bins()));
        biquadResponse->resize(static_cast<std::size_t>(ownersGrid->bins()));
    } else {
        magnitudeResponse =
            std::make_unique<EQMagnitudeResponse>(ownersGrid->mapping, ownersGrid->frequencies, prototype);
        magnitudeResponse->reserve(ownersGrid->bins());
    }
}

void ZelkProcessor::Band::updateDesign(std::int32_t position) noexcept REALTIME {
    if (!bandIsActive(parameters))
        return;
    if (position != -1 && dynamics.isActive() && dynamicGain != nullptr)
        kernelOffset = (*dynamicGain)[static_cast<std::size_t>(dynamicGain->isConstant != 0 ? 0 : position)];
    design(parameters.gain.get() + kernelOffset, prototype);
    ++version;
    updateCurve();
    if (analogResponse != nullptr)
        analogResponse->invalidate();
    if (biquadResponse != nullptr) {
        coefficients(prototype, biquadResponse->row, CoefficientCalculation::magnitudeMatch, SectionForm::direct);
        biquadResponse->invalidate();
    }
    if (magnitudeResponse != nullptr)
        magnitudeResponse->invalidate();
}

void ZelkProcessor::Band::updateCurve() noexcept REALTIME {
    if (!owner.autoGain.get())
        return;
    AnalogFilterPrototype* weighed = &prototype;
    if (dynamics.isActive()) {
        design(parameters.dynamicRange.get() * 0.5f + parameters.gain.get(), autoGainPrototype);
        weighed = &autoGainPrototype;
    }
    weighed->squaredMagnitudes(owner.curveFrequencies().values.data(), squaredMagnitudes.values.data(),
                               loudness::points);
}

void ZelkProcessor::Band::design(float gainDb, AnalogFilterPrototype& target) const noexcept REALTIME {
    const double radiansPerHz = 2.0 * std::numbers::pi / static_cast<double>(owner.sampleRate());
    const auto w = static_cast<float>(std::exp2(static_cast<double>(parameters.frequency.get())) * radiansPerHz);
    const auto q = static_cast<float>(parameters.q.unitFromValue(parameters.q.get()));
    designBand(parameters.shape.get(), parameters.slope.get(),
               std::clamp(gainDb * owner.gainScale.get(), -maxGainDb, maxGainDb), q, static_cast<double>(w), target,
               flatTiltHz * radiansPerHz);
}
