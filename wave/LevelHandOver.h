// Carries levels from the audio thread to one reader. Neither ever waits, and no level is lost or counted twice.
// Threads: put on the audio thread, take on the reader's.
#pragma once

#include "base/Realtime.h"

#include <array>
#include <atomic>
#include <cstdint>

// Two slots and one word, `sequence`: the number of the newest package, which lies in slot number mod 2, or -1 when the
// reader has it. The word only ever changes by compare-and-swap.
//
// The writer fills the slot that the word does not name, with what the named one holds added, and then moves the word
// on. If the reader took the named package meanwhile, the swap fails, and the writer begins again from -1 with the new
// level alone; as nobody but the reader can come between, its second swap succeeds.
//
// The reader copies the named slot and then swaps the number for -1. The writer may be writing that slot in the middle
// of the copy, two numbers on, so the fields are atomics and the copy may mix two packages. But to get there the writer
// has swapped the number that the reader saw for the next one. Of two swaps that expect the same number only one
// succeeds, so the reader's fails, and the copy is thrown away. (Numbers come again after 2^31 packages: weeks of audio
// within one copy.) If the reader's swap succeeds, no later package can be in the copy either: the writer begins it
// after it has seen the -1, which the reader released after its last load.
//
// Acquire and release: the writer's swap publishes the slot to the reader's load of the word; the reader's swap
// publishes the end of its loads to the writer's load of the word.
class LevelHandOver {
public:
    struct Package {
        float extreme = 0.0f;
        std::int64_t count = 0;       // samples
        std::uint32_t generation = 0; // packages of different generations are not combined, the newer one stays
    };

    // Adds to what the reader has not yet taken: the counts, and the larger or smaller of the extremes.
    void put(Package fresh, bool largest) noexcept REALTIME; // [audio]

    [[nodiscard]] bool take(Package& package) noexcept; // [reader] false: nothing new, the package is unchanged

private:
    struct Slot {
        std::atomic<float> extreme{0.0f};
        std::atomic<std::int64_t> count{0};
        std::atomic<std::uint32_t> generation{0};

        Package load() const noexcept REALTIME;
        void store(const Package& package) noexcept REALTIME;
    };

    Slot& slot(std::int32_t number) noexcept REALTIME { return slots[static_cast<std::size_t>(number & 1)]; }

    static constexpr std::int32_t taken = -1;
    static_assert(std::atomic<float>::is_always_lock_free && std::atomic<std::int64_t>::is_always_lock_free);

    std::array<Slot, 2> slots;
    std::atomic<std::int32_t> sequence{taken};
};
