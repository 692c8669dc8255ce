// What a convolver convolves with: made bit by bit, in slots of which the newest complete one is heard.
// Threads: audio; construction and destruction with the audio excluded.
#pragma once

#include "base/Realtime.h"
#include "eq/Convolver.h"
#include "eq/ConvolverConfiguration.h"
#include "eq/FFTTasks.h"
#include "eq/TaskSequence.h"
#include "wave/AlignedBuffer.h"
#include "wave/Component.h"
#include "wave/FFTBlock.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

// One state of a kernel: its samples, and their spectra as the levels want them.
class Convolver::Slot {
public:
    Slot(const Configuration& configuration, const std::vector<std::unique_ptr<AlignedBuffer<float>>>& scratches);

    AlignedBuffer<float> samples;
    std::int32_t length = 0;                           // valid samples
    std::uint64_t number = 0;                          // which one of its kernel; 0 was never made
    std::int32_t readers = 0;                          // places in the convolvers' levels that may still read it
    std::vector<std::unique_ptr<FFTBlock>> partitions; // the top level's first
};

// A step that works towards the samples of a slot. Runs before the spectra are made.
class Convolver::UpdateTask : public GranularTask {
public:
    using GranularTask::GranularTask;

    Slot* target = nullptr; // not owned; set at the start of each sequence
};

// A slot is written only while no level reads it, and the newest complete one never. With the slot in the making these
// are, at most: one that a level fades out, the one it fades in or has, one that waits for it below the top, and the
// newest. A second convolver that follows the first holds the same ones, but for a while after it began to follow; a
// kernel that finds no free slot then waits.
class Convolver::Kernel : public wave::Component {
public:
    Kernel(wave::Environment& owner, const Configuration& configuration);
    ~Kernel() override;

    virtual void
    hopBoundary(std::int32_t offset) noexcept REALTIME;          // of the top level, `offset` samples into the cycle
    virtual void update(std::int32_t samples) noexcept REALTIME; // the making goes on by what belongs to these samples

    // A dynamic kernel is made anew with each hop of the top level, in step with the audio.
    bool dynamic = false;

    void setDirty() noexcept REALTIME { dirty = true; } // what it is made of has changed

    // For the convolver.
    void connect() noexcept;                                                 // [!audio] no level reads any slot
    void beginCycle(std::int32_t count, bool streamBroke) noexcept REALTIME; // before anything else in a cycle
    Slot& getNewest() noexcept REALTIME { return *slots[newest]; }
    std::uint64_t nextNumber() const noexcept REALTIME { return started + 1; } // of a slot that is begun from now on
    // Begins anew, at the pace of the one that its convolver has read meanwhile. What was in the making is dropped.
    void takeOver(const Kernel& other) noexcept REALTIME;

    const Configuration& getConfiguration() const noexcept REALTIME { return configuration; }
    std::int32_t getCyclePosition() const noexcept REALTIME {
        return cyclePosition;
    } // where in the cycle a sequence starts
    bool isDirty() const noexcept REALTIME { return dirty; }
    std::int64_t getWorkEverDone() const noexcept REALTIME { return sequence.getWorkEverDone(); }
    bool isRunning() const noexcept REALTIME { return sequence.isRunning(); } // a new one is in the making

protected:
    // Behind those added before, ahead of the spectra. [!audio]
    void add(std::unique_ptr<UpdateTask> task);

private:
    // A partition's samples into its block.
    class StoreInputTask final : public FFTStoreInputTask {
    public:
        StoreInputTask(std::int32_t firstSample, std::int32_t hop);

        const Slot* target = nullptr;

        void begin() noexcept REALTIME override;

    private:
        std::int32_t firstSample;
        std::int32_t hop;
    };

    void addPartitions(const Configuration& level);
    void enablePartitions() noexcept REALTIME;
    void start(std::size_t slot) noexcept REALTIME;
    void advance(std::int32_t samples) noexcept REALTIME;
    std::int32_t periodFor() const noexcept REALTIME;
    std::size_t freeSlot() const noexcept REALTIME; // the number of slots: none
    std::int32_t hop() const noexcept REALTIME { return configuration.getHop(); }

    const Configuration& configuration;
    std::vector<std::unique_ptr<AlignedBuffer<float>>> scratches; // one a level, for one transform at a time
    std::vector<std::unique_ptr<Slot>> slots;
    std::vector<std::unique_ptr<UpdateTask>> updateTasks;
    std::vector<std::unique_ptr<StoreInputTask>> storeTasks; // one a partition, as in the slots
    std::vector<std::unique_ptr<FFTCalculateTask>> fftTasks;
    TaskSequence sequence;

    std::size_t newest = 0;
    std::size_t next = 0;           // in the making
    std::uint64_t started = 0;      // slots ever begun
    std::uint64_t lastFinished = 0; // position
    bool everFinished = false;
    bool dirty = true;
    bool immediate = false; // the stream broke: no need to wait for a crossfade
    std::int32_t cycleCount = 0;
    std::int32_t cyclePosition = 0;
    std::int32_t sampleBudget = 0; // of a dynamic kernel: what belongs to its hop, and comes with later cycles
    std::int32_t lastActive = -1;
    float lastSampleRate = 0.0f;
};
