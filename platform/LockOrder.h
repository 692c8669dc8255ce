// The order in which the locks of the editor side are taken, watched in debug builds.
// Threads: any but audio.
#pragma once

// Outer to inner. A thread that holds one takes only those below it, or the same again.
enum class LockRank { processWide, adapter, interface, proxy, unranked };

// Called by critical sections around their system lock. Taking a lock above one that is held is a fatal assertion in
// debug builds; release builds count nothing.
void lockTaken(LockRank rank) noexcept;
void lockReleased(LockRank rank) noexcept;
