// What coefficients a block has and for how long: rows with their run lengths, in the order of time.
// Threads: audio; construction with the audio excluded.
#pragma once

#include "base/Realtime.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>

// Rows of whole groups of values: of 5 doubles, the coefficients of a section, or of 1 float, the share of the filtered
// signal. The content lives from the calculation of the coefficients to the end of the processing, so filters that run
// one after another can share one.
template <typename T, std::size_t group>
class CoefficientQueue {
public:
    CoefficientQueue(std::size_t mostRuns, std::size_t longestRow);

    void setRowLength(std::size_t elements) noexcept REALTIME { rowLength = elements; } // while empty

    // Joins the last run if its row is the same, bit by bit. A full queue keeps only the newest row for its last run:
    // the lengths of the runs always add up to what was queued.
    void enqueue(std::int32_t count, const T* row) noexcept REALTIME;

    // Room for `count` runs of one sample, to be filled in at once by whoever knows that the rows differ. Null, with
    // nothing changed, if there is not as much.
    T* appendSingles(std::int32_t count) noexcept REALTIME;

    // Empties the queue; its last row stays readable as the front until the next enqueue.
    void restart() noexcept REALTIME;

    bool holdsOnly(T value) const noexcept REALTIME { return used == 1 && rows[0] == value; }

    std::span<const std::uint32_t> runLengths() const noexcept REALTIME { return {lengths.get(), used}; }
    const T* front() const noexcept REALTIME { return rows.get(); }
    const T* row(std::size_t run) const noexcept REALTIME { return rows.get() + run * rowLength; }
    std::size_t getRowLength() const noexcept REALTIME { return rowLength; }
    std::size_t getLongestRow() const noexcept REALTIME { return longestRow; }

private:
    bool equalsLast(const T* row) const noexcept REALTIME;
    void copyRow(const T* from, std::size_t run) noexcept REALTIME;

    const std::size_t capacity; // runs
    const std::size_t longestRow;
    std::size_t rowLength;
    std::unique_ptr<std::uint32_t[]> lengths;
    std::unique_ptr<T[]> rows;
    std::size_t used = 0; // runs
};

using RowQueue = CoefficientQueue<double, 5>;
using ScaleQueue = CoefficientQueue<float, 1>;

extern template class CoefficientQueue<double, 5>;
extern template class CoefficientQueue<float, 1>;

// Inline, and in groups of a fixed size: a gain that moves queues a row for every sample.
template <typename T, std::size_t group>
inline bool CoefficientQueue<T, group>::equalsLast(const T* row) const noexcept REALTIME {
    const T* const last = rows.get() + (used - 1) * rowLength;
    for (std::size_t i = 0; i < rowLength; i += group)
        if (std::memcmp(last + i, row + i, group * sizeof(T)) != 0)
            return false;
    return true;
}

template <typename T, std::size_t group>
inline void CoefficientQueue<T, group>::copyRow(const T* from, std::size_t run) noexcept REALTIME {
    T* const to = rows.get() + run * rowLength;
    for (std::size_t i = 0; i < rowLength; i += group)
        std::memcpy(to + i, from + i, group * sizeof(T));
}

template <typename T, std::size_t group>
inline void CoefficientQueue<T, group>::enqueue(std::int32_t count, const T* row) noexcept REALTIME {
    const auto length = static_cast<std::uint32_t>(count);
    if (used == 0 || (used < capacity && !equalsLast(row))) {
        lengths[used] = length;
        ++used;
    } else {
        lengths[used - 1] += length;
    }
    copyRow(row, used - 1);
}

template <typename T, std::size_t group>
inline T* CoefficientQueue<T, group>::appendSingles(std::int32_t count) noexcept REALTIME {
    const auto runs = static_cast<std::size_t>(count);
    if (capacity - used < runs)
        return nullptr;
    for (std::size_t i = 0; i < runs; ++i)
        lengths[used + i] = 1;
    T* const first = rows.get() + used * rowLength;
    used += runs;
    return first;
}
