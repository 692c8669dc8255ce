// One partition size of a convolver, and by its child all smaller ones.
// Threads: audio; construction and destruction with the audio excluded.
#pragma once

#include "base/Realtime.h"
#include "eq/Convolver.h"
#include "eq/ConvolverConfiguration.h"
#include "eq/ConvolverKernel.h"
#include "eq/FFTTasks.h"
#include "eq/TaskSequence.h"
#include "wave/AlignedBuffer.h"
#include "wave/BasicBlock.h"
#include "wave/FFTBlock.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

class ConvolverLevel {
public:
    // The kernel is null but at the top. `firstPartition` is this level's first in a slot's list.
    ConvolverLevel(wave::Environment& owner, const Convolver::Configuration& configuration, Convolver::Kernel* kernel,
                   std::int32_t firstPartition);
    ConvolverLevel(const ConvolverLevel&) = delete;
    ConvolverLevel& operator=(const ConvolverLevel&) = delete;

    // The stream begins, `offset` samples into the cycle. The newest kernel is taken at once.
    void reset(std::int32_t offset) noexcept REALTIME;

    // `delayed` is the input as all levels but the deepest read it. At most a block.
    void process(const float* input, const float* delayed, float* output, std::int32_t count) noexcept REALTIME;

    // At the top: takes the kernels that another top level takes, or its own with null, from slot number `fresh` on.
    void follow(const ConvolverLevel* wanted, std::uint64_t fresh) noexcept REALTIME;

    std::int64_t getWorkEverDone() const noexcept REALTIME; // of the children too

private:
    // The place of a slot that is read. Counts, so that nobody writes there.
    class Reading {
    public:
        Reading& operator=(const Reading&) = delete;
        void set(Convolver::Slot* wanted) noexcept REALTIME;
        Convolver::Slot* get() const noexcept REALTIME { return slot; }

    private:
        Convolver::Slot* slot = nullptr;
    };

    bool partitionsChanged() noexcept REALTIME;
    void clear() noexcept REALTIME;
    void process(const float* input, const float* delayed, float* output, std::int32_t count,
                 std::int32_t offset) noexcept REALTIME;
    void collect(const float* samples, std::int32_t count) noexcept REALTIME;
    void addOutput(float* output, std::int32_t count) noexcept REALTIME;
    void hopBoundary(std::int32_t offset) noexcept REALTIME;
    void takeKernel() noexcept REALTIME;
    void setKernel(Convolver::Slot& slot) noexcept REALTIME;
    void arrangeTasks() noexcept REALTIME;
    void arrangeSet(std::size_t set, Convolver::Slot* slot) noexcept REALTIME;

    wave::Environment& environment;
    const Convolver::Configuration& configuration;
    Convolver::Kernel* const kernel;        // not owned
    const ConvolverLevel* leader = nullptr; // not owned; of a top level whose own kernel rests
    std::uint64_t firstFresh = 0;           // number of the first slot to take
    const std::size_t firstPartition;
    const std::int32_t hop;
    std::unique_ptr<ConvolverLevel> child;

    AlignedBuffer<float> scratch;                          // of all transforms here, which follow on each other
    std::vector<std::unique_ptr<FFTBlock>> inputBlocks;    // a ring: one collects, the others are the latest spectra
    std::array<std::unique_ptr<FFTBlock>, 4> outputBlocks; // by turns, two for `current` and two for `outgoing`
    AlignedBuffer<float> previousHop;
    wave::BasicBlock<float> crossfadeBuffer;

    TaskSequence scheduler;
    FFTCalculateTask inputTask;
    // Two sets, that of `current` and that of `outgoing`.
    std::array<std::vector<std::unique_ptr<FFTMultiplyTask>>, 2> multiplyTasks;
    std::array<FFTCalculateInverseTask, 2> inverseTasks;

    std::int32_t activePartitions;
    std::size_t ringPosition = 0;
    std::size_t pingPong = 0; // of the output blocks: the one in the making
    std::int32_t positionInHop = 0;
    std::int32_t filledHops = 0; // at most what any test here asks for

    Reading current;
    Reading outgoing;
    Reading pending;                   // for a child: taken when its output and that of the level above change together
    std::int32_t pendingCountdown = 0; // hop boundaries
    std::int32_t crossfadePending = 0; // samples for which `outgoing` is still computed
    std::int32_t crossfadeLeft = 0;    // samples to sound
    double crossfadePosition = 0.0;    // 0 outgoing, 1 current
};
