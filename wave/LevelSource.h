// The read side of a meter.
// Threads: one reader, the same at all times; the interface polls from its timer.
#pragma once

#include <cstdint>

class LevelSource {
public:
    // What a high reading means.
    enum class Detection : std::int32_t {
        smallest = 0, // the smallest value counts: gain reduction, which grows downward
        largest = 1,
    };
    enum class Info : std::int32_t {
        level = 0,   // present
        peak = 1,    // held
        extreme = 2, // of all time, until resetPeak
    };

    virtual Detection getDetection() = 0;
    virtual float level(Info info) = 0;
    virtual void resetPeak() = 0;
    virtual void releaseHold() {} // lets go what is held; a meter that holds nothing beyond its peak has nothing to do

protected:
    ~LevelSource() = default;
};
