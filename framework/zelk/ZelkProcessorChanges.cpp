// How a changed parameter reaches the graph. Values that only glide go to their components by themselves; here is what
// changes the wiring, the designs and the auto gain.
#include "framework/zelk/ZelkBand.h"
#include "framework/zelk/ZelkChannel.h"
#include "framework/zelk/ZelkProcessor.h"

namespace {

bool concerns(std::int32_t id, const AbstractPluginParameter& parameter) noexcept {
    return id == -1 || id == parameter.id();
}

} // namespace

void ZelkProcessor::applyParameter(std::int32_t id) noexcept REALTIME {
    Due due;
    for (std::int32_t index = 0; index < bandCount; ++index) {
        if (band(index).concernedBy(id))
            noteBandChange(index, id, due);
    }
    if (due.solo)
        soloedBand = scanSolo();
    if (due.wiring)
        rewireChannels();
    if (due.solo) {
        for (ZelkChannel* const channel : zelkChannels)
            channel->soloChanged();
    }
    updateDesigns(id);
    GenericPluginProcessor::applyParameter(id);
}

void ZelkProcessor::noteBandChange(std::int32_t index, std::int32_t id, Due& due) noexcept REALTIME {
    const EQParameterSet& parameters = bands.set(index);
    due.solo = due.solo || concerns(id, parameters.solo) || concerns(id, parameters.used);
    const bool placed = concerns(id, parameters.used) || concerns(id, parameters.enabled) ||
                        concerns(id, parameters.solo) || concerns(id, parameters.stereoPlacement) ||
                        concerns(id, parameters.speakers);
    if (!placed)
        return;
    due.wiring = true;
    for (ZelkChannel* const channel : zelkChannels)
        channel->enableFilter(index);
}

std::int32_t ZelkProcessor::scanSolo() const noexcept REALTIME {
    std::int32_t found = -1;
    for (std::int32_t index = 0; index < bandCount; ++index) {
        if (bands.set(index).solo.get() && bands.set(index).used.get())
            found = index;
    }
    return found;
}

// The designs serve the auto gain alone, so without it nothing is due.
void ZelkProcessor::updateDesigns(std::int32_t id) noexcept REALTIME {
    bool stale = concerns(id, autoGain);
    if (autoGain.get()) {
        const bool all = stale || concerns(id, gainScale);
        for (std::int32_t index = 0; index < bandCount; ++index) {
            if (!all && !band(index).concernedBy(id))
                continue;
            band(index).updateDesign(environment().sampleRate);
            stale = true;
        }
    }
    if (!stale)
        return;
    const float gain = computeAutoGain();
    for (ZelkChannel* const channel : zelkChannels)
        channel->setAutoGain(gain);
}
