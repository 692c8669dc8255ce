// The read side of a stream of samples, in blocks that arrived since the last look.
// Threads: those of LockedSource.
#pragma once

#include "wave/LockedSource.h"

#include <cstddef>
#include <span>

class AudioSource : public LockedSource {
public:
    // Valid between lock and unlock.
    virtual std::size_t blockSize() const = 0; // samples a channel
    virtual std::span<const float> blockData(std::size_t blockIndex, std::size_t channel) const = 0; // one block
    virtual std::size_t blockCount() const = 0;                                                      // in time order
    virtual std::size_t channelCount() const = 0;
};
