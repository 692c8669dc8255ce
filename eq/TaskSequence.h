// Spreads a list of tasks evenly over a number of samples.
// Threads: audio, the list with the audio excluded.
#pragma once

#include "base/Realtime.h"
#include "eq/GranularTask.h"

#include <cstddef>
#include <cstdint>
#include <vector>

// The work done follows the samples elapsed, so that no block has more to do than its share, and the last task is
// finished exactly when the period is over.
class TaskSequence {
public:
    void add(GranularTask& task) { insert(tasks.size(), task); } // not owned
    void insert(std::size_t place, GranularTask& task);

    void setPeriod(std::int32_t samples) noexcept REALTIME { period = samples; }
    void reset() noexcept REALTIME; // starts again at the first task; what was left is dropped
    void stop() noexcept REALTIME;  // nothing is left

    bool advance(std::int32_t samples) noexcept REALTIME; // true once: when the last task has finished

    bool isRunning() const noexcept REALTIME { return current < tasks.size(); }
    std::int64_t getWorkEverDone() const noexcept REALTIME { return workEverDone; } // units by weight, of all periods

private:
    std::size_t firstEnabled(std::size_t from) const noexcept REALTIME;

    std::vector<GranularTask*> tasks;
    std::size_t current = 0;
    std::int32_t positionInTask = 0;
    std::int32_t period = 0;
    std::int32_t elapsed = 0;
    std::int64_t totalWork = 0;
    std::int64_t workDone = 0; // of this period
    std::int64_t workEverDone = 0;
};
