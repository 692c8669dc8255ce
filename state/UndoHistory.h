// The states that an instance went through, as whole snapshots in a ring: the present one, those before it and those
// that were undone. A step is taken at the end of a gesture, never by a timer and never by the host.
// Threads: main.
#pragma once

#include "base/NotifyEvent.h"
#include "state/SnapshotList.h"

#include <cstdint>
#include <string_view>

class UndoHistory : public EventSender {
public:
    static constexpr std::int32_t ringSize = 100; // the present state and 99 before it

    explicit UndoHistory(GenericStatefulPlugin& owner) : plugin(owner), snapshots(owner, ringSize) {}

    void begin(); // takes the floor of undo, the first time
    void push();  // the present state is the newest; what was undone is gone
    void undo();
    void redo();
    void step(std::int32_t delta); // brings that state back and leaves the counts alone

    bool hasChanges() const; // whether a parameter has moved since the present step
    bool canUndo() const noexcept { return undoCount >= 1; }
    bool canRedo() const noexcept { return redoCount >= 1; }
    std::int32_t undoSteps() const noexcept { return undoCount; }
    std::int32_t redoSteps() const noexcept { return redoCount; }

    NotifyEvent changed; // of what the buttons show, those of the compare states too

private:
    GenericStatefulPlugin& plugin;
    SnapshotList snapshots;
    std::int32_t redoCount = 0;
    std::int32_t undoCount = 0;
    std::int32_t position = 0; // of the present state
};
