// What all components of one graph share: sample rate, block size, the count of cycles, who runs and who is reset.
// Threads: audio, or any with the audio excluded.
#pragma once

#include "base/NotifyEvent.h"
#include "base/Realtime.h"
#include "wave/BasicBlock.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace wave {

class Producer;

// A cycle of the audio thread is beginCycle(), any number of pulls, runCycle(). Nothing in here is atomic.
// An environment outlives its components.
class Environment {
public:
    static constexpr std::int32_t defaultMaxBlockSize = 256;

    explicit Environment(std::int32_t blockSize = defaultMaxBlockSize);
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

    virtual ~Environment();
    virtual std::int32_t getMaxBlockSize() const noexcept REALTIME { return maxBlockSize; }
    // The block size of this class never changes, so it keeps no list of listeners.
    virtual void addMaxBlockSizeListener(DynamicMaxBlockSizeListener&) {}
    virtual void removeMaxBlockSizeListener(DynamicMaxBlockSizeListener&) {}

    void setSampleRate(float rate); // [main & !processing] a rate that is not above 0 is ignored

    void beginCycle() noexcept REALTIME { ++cycle; }                         // [audio]
    void runCycle(std::int32_t count, bool skipScheduled) noexcept REALTIME; // [audio] ends the cycle

    void resetAll() noexcept REALTIME;                              // [audio] a new stream begins
    void jump() noexcept REALTIME { lastResetPosition = position; } // [audio] smoothed values end their ramps

    bool allAtRest() const noexcept REALTIME; // nothing that can be reset still sounds

    // The continuity test of components that must notice a gap in their stream. `nextPosition` is the caller's memory:
    // where its last block ended. False: the block of `count` samples that begins now does not follow on that one.
    bool continues(std::uint64_t& nextPosition, std::int32_t count) const noexcept REALTIME {
        const bool whole = nextPosition == position && nextPosition != lastRestartPosition;
        nextPosition = position + static_cast<std::uint64_t>(count);
        return whole;
    }

    // State, for components to read. Only the operations above change it.
    const std::int32_t maxBlockSize; // largest count of a cycle
    float sampleRate = 44100.0f;
    std::uint32_t cycle = 0;
    std::uint64_t position = 0;            // samples since creation
    std::uint64_t lastResetPosition = 0;   // of the last reset of any kind
    std::uint64_t lastRestartPosition = 0; // of the last full restart: stream start or change of the sample rate

    // Set from outside.
    bool destroying = false; // teardown has begun: dying producers leave the lists as they are
    bool uiActive = false;   // somebody looks: a hint for components that feed displays

    NotifyEvent sampleRateChanged; // fires when the rate is stored and everything is reset

    const ConstValueBlock zeroBlock;
    std::array<BasicBlock<float>, 2> scratchBlocks; // for use inside one filter call, never across a pull

private:
    friend class Producer;

    void addProducer();
    void removeProducer() noexcept { --producerCount; }
    void insertScheduled(Producer& producer) noexcept REALTIME;
    void removeScheduled(const Producer& producer) noexcept REALTIME;
    void insertResettable(Producer& producer) noexcept REALTIME;
    void removeResettable(const Producer& producer) noexcept REALTIME;

    // Not owned; a producer takes itself out. Both have room for all live producers, so that scheduling never
    // allocates.
    std::vector<Producer*> scheduledList; // heads, middle, tail
    std::vector<Producer*> resetList;
    std::ptrdiff_t headCount = 0;
    std::size_t producerCount = 0;
    std::ptrdiff_t walkIndex = -1; // of the producer that runCycle runs, -1 outside
};

} // namespace wave
