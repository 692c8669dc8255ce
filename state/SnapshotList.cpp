#include "state/SnapshotList.h"

#include "framework/AbstractPluginParameter.h"
#include "state/GenericStatefulPlugin.h"

void SnapshotList::capture(std::int32_t index, std::string_view label) {
    plugin.takeAutomation();
    Snapshot& taken = snapshots[static_cast<std::size_t>(index)];
    taken.label = label;
    taken.presetName = plugin.currentPreset().name();
    taken.presetPath = plugin.currentPreset().path();
    taken.presetModified = plugin.currentPreset().modified();
    taken.compareSlot = plugin.compareStates().current();
    taken.parameterValues.resize(static_cast<std::size_t>(plugin.parameterCount()));
    std::size_t place = 0;
    for (const AbstractPluginParameter* parameter : plugin.parameters())
        taken.parameterValues[place++] = parameter->value();
    taken.interfaceState = plugin.interfaceState;
    taken.customValues = plugin.customValues;
}
