#include "wave/LevelHandOver.h"

#include <algorithm>
#include <limits>

LevelHandOver::Package LevelHandOver::Slot::load() const noexcept REALTIME {
    return {extreme.load(std::memory_order_relaxed), count.load(std::memory_order_relaxed),
            generation.load(std::memory_order_relaxed)};
}

void LevelHandOver::Slot::store(const Package& package) noexcept REALTIME {
    extreme.store(package.extreme, std::memory_order_relaxed);
    count.store(package.count, std::memory_order_relaxed);
    generation.store(package.generation, std::memory_order_relaxed);
}

void LevelHandOver::put(Package fresh, bool largest) noexcept REALTIME {
    std::int32_t number = sequence.load(std::memory_order_acquire);
    for (;;) {
        Package whole = fresh;
        if (number != taken) {
            const Package waiting = slot(number).load();
            if (waiting.generation == fresh.generation) {
                whole.extreme =
                    largest ? std::max(waiting.extreme, fresh.extreme) : std::min(waiting.extreme, fresh.extreme);
                whole.count += waiting.count;
            }
        }
        // The largest number is odd and 0 is even: the slots alternate across the wrap too.
        const std::int32_t next = number == std::numeric_limits<std::int32_t>::max() ? 0 : number + 1;
        slot(next).store(whole);
        if (sequence.compare_exchange_strong(number, next, std::memory_order_acq_rel, std::memory_order_acquire))
            return;
    }
}

bool LevelHandOver::take(Package& package) noexcept {
    std::int32_t number = sequence.load(std::memory_order_acquire);
    while (number != taken) {
        const Package copy = slot(number).load();
        if (sequence.compare_exchange_strong(number, taken, std::memory_order_acq_rel, std::memory_order_acquire)) {
            package = copy;
            return true;
        }
    }
    return false;
}
