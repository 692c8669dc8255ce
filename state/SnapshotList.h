// A fixed number of snapshots of one instance.
// Threads: main.
#pragma once

#include "state/Snapshot.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

class GenericStatefulPlugin;

class SnapshotList {
public:
    SnapshotList(GenericStatefulPlugin& owner, std::int32_t size)
        : plugin(owner), snapshots(static_cast<std::size_t>(size)) {}
    SnapshotList(const SnapshotList&) = delete;
    SnapshotList& operator=(const SnapshotList&) = delete;

    void capture(std::int32_t index, std::string_view label); // allocates only when a text or a list grows

    const Snapshot& at(std::int32_t index) const noexcept { return snapshots[static_cast<std::size_t>(index)]; }
    std::int32_t size() const noexcept { return static_cast<std::int32_t>(snapshots.size()); }

private:
    GenericStatefulPlugin& plugin;
    std::vector<Snapshot> snapshots;
};
