// A piece of work that can be done bit by bit.
// Threads: audio.
#pragma once

#include "base/Realtime.h"

#include <cstdint>

// A TaskSequence runs it: prepare() at the sequence's start, then begin(), run() with positions that follow on each
// other from 0 to the units, finish().
class GranularTask {
public:
    explicit GranularTask(std::int32_t startWeight = 1) : weight(startWeight) {}
    GranularTask(const GranularTask&) = delete;
    GranularTask& operator=(const GranularTask&) = delete;

    virtual ~GranularTask() = default;
    virtual void finish() noexcept REALTIME {}
    virtual void begin() noexcept REALTIME {}
    virtual void run(std::int32_t position, std::int32_t count) noexcept REALTIME = 0;
    virtual void prepare() noexcept REALTIME {} // the last moment for units, weight and what they depend on

    bool enabled = true; // of effect at the sequence's next start
    std::int32_t units = 0;
    std::int32_t weight; // cost of a unit; 1 is that of a transform, about 0.05 ns on a desktop processor
};
