// A set of parameter ids that one thread fills and another empties.
// Threads: mark on any, take on one.
#pragma once

#include "base/Realtime.h"

#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

// mark writes the bit and then the flag with release; take clears the flag first with acquire. So a bit that take does
// not find was marked later, and its mark found the flag clear and says so.
class ParameterIdSet {
public:
    explicit ParameterIdSet(std::size_t idCount) : words((idCount + 63) / 64) {}

    // True: nothing was waiting, so whoever empties the set must be woken.
    bool mark(std::int32_t id) noexcept REALTIME {
        const auto bit = static_cast<std::size_t>(id);
        words[bit / 64].fetch_or(std::uint64_t{1} << (bit % 64), std::memory_order_relaxed);
        return !waiting.exchange(true, std::memory_order_acq_rel);
    }

    // Empties the set and calls the work with each id, in rising order.
    template <typename Work>
    void take(Work&& work) {
        if (!waiting.exchange(false, std::memory_order_acq_rel))
            return;
        for (std::size_t word = 0; word < words.size(); ++word)
            for (std::uint64_t bits = words[word].exchange(0, std::memory_order_relaxed); bits != 0; bits &= bits - 1)
                work(static_cast<std::int32_t>(word * 64 + static_cast<std::size_t>(std::countr_zero(bits))));
    }

private:
    std::vector<std::atomic<std::uint64_t>> words;
    std::atomic<bool> waiting{false};
};
