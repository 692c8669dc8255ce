#include "state/CompareStates.h"

#include "state/GenericStatefulPlugin.h"

void CompareStates::begin() {
    if (initialised)
        return;
    snapshots.capture(slot, {});
    copyToOther();
    initialised = true;
}

void CompareStates::setCurrent(std::int32_t wanted) {
    if (wanted == slot)
        return;
    snapshots.capture(slot, {});
    slot = wanted;
}

void CompareStates::toggle() {
    begin(); // a slot that was never filled holds nothing to go to
    setCurrent(other());
    plugin.applySnapshot(snapshots.at(slot));
    plugin.undoHistory().push();
}

void CompareStates::copyToOther() {
    snapshots.capture(other(), {});
    slotsDiffer = false;
    plugin.undoHistory().changed.fire(&plugin.undoHistory());
}
