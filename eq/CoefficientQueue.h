// What coefficients a block has and for how long: rows with their run lengths, in the order of time.
// Threads: audio; construction with the audio excluded.
#pragma once

#include "base/Realtime.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

// T is double for the coefficients of sections, float for the share of the filtered signal. The content lives from the
// calculation of the coefficients to the end of the processing, so filters that run one after another can share one.
template <typename T>
class CoefficientQueue {
public:
    CoefficientQueue(std::size_t mostRuns, std::size_t longestRow);

    void setRowLength(std::size_t elements) noexcept REALTIME { rowLength = elements; } // while empty

    // Joins the last run if its row is the same, bit by bit. A full queue keeps only the newest row for its last run:
    // the lengths of the runs always add up to what was queued.
    void enqueue(std::int32_t count, const T* row) noexcept REALTIME;

    // Empties the queue; its last row stays readable as the front until the next enqueue.
    void restart() noexcept REALTIME;

    bool holdsOnly(T value) const noexcept REALTIME { return used == 1 && rows[0] == value; }

    std::span<const std::uint32_t> runLengths() const noexcept REALTIME { return {lengths.get(), used}; }
    const T* front() const noexcept REALTIME { return rows.get(); }
    const T* row(std::size_t run) const noexcept REALTIME { return rows.get() + run * rowLength; }
    std::size_t getRowLength() const noexcept REALTIME { return rowLength; }
    std::size_t getLongestRow() const noexcept REALTIME { return longestRow; }

private:
    const std::size_t capacity; // runs
    const std::size_t longestRow;
    std::size_t rowLength;
    std::unique_ptr<std::uint32_t[]> lengths;
    std::unique_ptr<T[]> rows;
    std::size_t used = 0; // runs
};

extern template class CoefficientQueue<float>;
extern template class CoefficientQueue<double>;
