#include "state/UndoHistory.h"

#include "base/FloatTolerance.h"
#include "framework/AbstractPluginParameter.h"
#include "state/GenericStatefulPlugin.h"

#include <algorithm>
#include <cmath>

void UndoHistory::begin() {
    if (position == 0 && undoCount == 0 && redoCount == 0)
        snapshots.capture(position, "Initial state");
    changed.fire(this);
}

void UndoHistory::push() {
    position = (position + 1) % ringSize;
    snapshots.capture(position, {});
    redoCount = 0;
    undoCount = std::min(undoCount + 1, ringSize - 1);
    changed.fire(this);
}

void UndoHistory::undo() {
    if (!canUndo())
        return;
    step(-1);
    --undoCount;
    redoCount = std::min(redoCount + 1, ringSize - 1);
    changed.fire(this);
}

void UndoHistory::redo() {
    if (!canRedo())
        return;
    step(1);
    undoCount = std::min(undoCount + 1, ringSize - 1);
    --redoCount;
    changed.fire(this);
}

void UndoHistory::step(std::int32_t delta) {
    position = (position + ringSize + delta) % ringSize;
    const Snapshot& wanted = snapshots.at(position);
    plugin.compareStates().setCurrent(wanted.compareSlot);
    plugin.applySnapshot(wanted);
    plugin.compareStates().markDirty();
}

bool UndoHistory::hasChanges() const {
    plugin.takeAutomation();
    const std::vector<float>& values = snapshots.at(position).parameterValues;
    if (values.size() != static_cast<std::size_t>(plugin.parameterCount()))
        return true;
    return !std::equal(values.begin(), values.end(), plugin.parameters().begin(),
                       [](float stored, const AbstractPluginParameter* parameter) {
                           return std::fabs(stored - parameter->value()) <= floatTolerance;
                       });
}
