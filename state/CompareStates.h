// The two states A and B that a user switches between.
// Threads: main.
#pragma once

#include "state/SnapshotList.h"

#include <cstdint>

class CompareStates {
public:
    explicit CompareStates(GenericStatefulPlugin& owner) : plugin(owner), snapshots(owner, 2) {}

    void begin();                       // both start as the present state, the first time
    void setCurrent(std::int32_t slot); // the slot that is left keeps the present state; nothing else is applied
    void toggle();                      // to the other state, as a step of the undo history
    void copyToOther();
    void markDirty() noexcept { slotsDiffer = true; }

    std::int32_t current() const noexcept { return slot; } // 0: A, 1: B
    bool dirty() const noexcept { return slotsDiffer; }    // the two may differ: copying makes sense

private:
    std::int32_t other() const noexcept { return (slot + 1) % 2; }

    GenericStatefulPlugin& plugin;
    SnapshotList snapshots;
    std::int32_t slot = 0;
    bool slotsDiffer = false;
    bool initialised = false;
};
