// How a changed parameter reaches the graph. Values that only glide go to their components by themselves; here is what
// changes the wiring, the designs, the dynamics and the auto gain.
#include "framework/zelk/KernelGrid.h"
#include "framework/zelk/ZelkBand.h"
#include "framework/zelk/ZelkChannel.h"
#include "framework/zelk/ZelkProcessor.h"

namespace {

bool concerns(std::int32_t id, const AbstractPluginParameter& parameter) noexcept {
    return id == -1 || id == parameter.id();
}

} // namespace

void ZelkProcessor::applyParameter(std::int32_t id) noexcept REALTIME {
    const bool modeChanged = concerns(id, processingMode) || concerns(id, processingResolution);
    Due due;
    due.kernels = modeChanged;
    for (std::int32_t index = 0; index < bandCount; ++index) {
        if (band(index).concernedBy(id))
            noteBandChange(index, id, due);
        if (band(index).concernedBy(id) || modeChanged)
            due.wiring = updateDynamics(index, id, modeChanged) || due.wiring;
    }
    if (due.solo)
        soloedBand = scanSolo();
    settleWiring(due);
    if (due.solo) {
        for (ZelkChannel* const channel : zelkChannels)
            channel->soloChanged();
    }
    updateDesigns(id, modeChanged);
    for (std::int32_t index = 0; index < bandCount; ++index) {
        if ((band(index).concernedBy(id) || modeChanged) && band(index).dynamics.isWanted())
            configureDynamics(index);
    }
    GenericPluginProcessor::applyParameter(id);
}

void ZelkProcessor::noteBandChange(std::int32_t index, std::int32_t id, Due& due) noexcept REALTIME {
    const EQParameterSet& parameters = bands.set(index);
    due.solo = due.solo || concerns(id, parameters.solo) || concerns(id, parameters.used);
    due.chains = due.chains || concerns(id, parameters.shape) || concerns(id, parameters.slope);
    const bool placed = concerns(id, parameters.used) || concerns(id, parameters.enabled) ||
                        concerns(id, parameters.solo) || concerns(id, parameters.stereoPlacement) ||
                        concerns(id, parameters.speakers);
    due.wiring = due.wiring || placed || concerns(id, extensions.set(index).externalSideChain);
    if (!placed)
        return;
    for (ZelkChannel* const channel : zelkChannels)
        channel->enableFilters(index);
}

std::int32_t ZelkProcessor::scanSolo() const noexcept REALTIME {
    std::int32_t found = -1;
    for (std::int32_t index = 0; index < bandCount; ++index) {
        if (bands.set(index).solo.get() && bands.set(index).used.get())
            found = index;
    }
    return found;
}

void ZelkProcessor::settleWiring(const Due& due) noexcept REALTIME {
    if (due.kernels)
        rebuildKernels();
    else if (due.wiring)
        rewireChannels();
    else if (due.chains && grid != nullptr)
        for (ZelkChannel* const channel : zelkChannels)
            channel->connectChains();
}

// Dynamics

bool ZelkProcessor::updateDynamics(std::int32_t index, std::int32_t id, bool modeChanged) noexcept REALTIME {
    const EQParameterSet& parameters = bands.set(index);
    BandDynamics& dynamics = band(index).dynamics;
    const bool switched = modeChanged || concerns(id, parameters.used) || concerns(id, parameters.enabled) ||
                          concerns(id, parameters.solo) || concerns(id, parameters.shape) ||
                          concerns(id, parameters.dynamicRange) || concerns(id, parameters.dynamicsEnabled);
    if (switched) {
        const bool before = dynamics.isActive();
        band(index).setDynamic(dynamicsAllowed(processingMode.get(), processingResolution.get()) &&
                               dynamics.isWanted());
        if (dynamics.isActive() != before) {
            for (ZelkChannel* const channel : zelkChannels)
                channel->followDynamics(index);
        }
    }
    return (switched || concerns(id, parameters.threshold)) && dynamics.updateAutoThreshold();
}

void ZelkProcessor::configureDynamics(std::int32_t index) noexcept REALTIME {
    BandDynamics& dynamics = band(index).dynamics;
    const BandDynamics::Region region = dynamics.configure();
    bool moved = false;
    for (ZelkChannel* const channel : zelkChannels)
        moved = channel->setRegion(index, region) || moved;
    if (moved)
        dynamics.compander.resynchronize();
}

// Designs serve kernels and the auto gain alone: in Zero Latency without it nothing is due.
void ZelkProcessor::updateDesigns(std::int32_t id, bool modeChanged) noexcept REALTIME {
    const bool all = modeChanged || concerns(id, autoGain) || concerns(id, gainScale);
    bool designed = false;
    if (autoGain.get() || grid != nullptr) {
        for (std::int32_t index = 0; index < bandCount; ++index) {
            if (!all && !band(index).concernedBy(id))
                continue;
            band(index).updateDesign(-1);
            designed = true;
        }
    }
    if (modeChanged || concerns(id, autoGain) || (autoGain.get() && designed)) {
        autoGainFactor = computeAutoGain();
        const bool inKernels = isLinear();
        for (ZelkChannel* const channel : zelkChannels)
            channel->setAutoGain(inKernels ? 1.0f : autoGainFactor);
        designed = true;
    }
    if (designed) {
        for (ZelkChannel* const channel : zelkChannels)
            channel->markKernelsDirty();
    }
}
