// Runs a cascade of up to 8 second-order sections over a channel, or over a linked pair of channels, with coefficients
// that may change inside a block, and fades between the dry and the filtered signal.
// Threads: audio; construction with the audio excluded.
#pragma once

#include "base/Property.h"
#include "base/Realtime.h"
#include "eq/BiquadKernels.h"
#include "eq/BiquadSections.h"
#include "eq/CascadeFade.h"
#include "eq/CoefficientQueue.h"
#include "wave/AlignedBuffer.h"
#include "wave/BasicBlock.h"
#include "wave/Environment.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

class BiquadProcessor {
public:
    static constexpr std::size_t maxSections = 8;

    // How a pending soft reset fills the memory: with 0, or as if the input had always been what it is now.
    enum class ResetMode : std::int32_t { resetClear, resetFollowInput };

    enum class PendingReset : std::uint32_t { none, soft, hard };

    // granularity: the least samples between two rows; it bounds the room of the queues.
    BiquadProcessor(wave::Environment& owner, std::size_t sections, std::int32_t granularity);
    // Shares the queues of another, which outlives this one, runs never at the same time and has no fewer sections.
    BiquadProcessor(wave::Environment& owner, std::size_t sections, BiquadProcessor& queueOwner);
    BiquadProcessor(const BiquadProcessor&) = delete;
    BiquadProcessor& operator=(const BiquadProcessor&) = delete;
    ~BiquadProcessor();

    // A fade of 20 ms; a jump if nothing has been heard since the last reset. Goes to the linked partner too.
    void setEnabled(bool wanted) noexcept REALTIME;

    // The rows are those in use, in the old form: the memory goes over to the new one without a step.
    void setForm(SectionForm wanted, const double* rowsInUse) noexcept REALTIME;

    // Two processors with equal rows run as one from now on. Null: alone again.
    void link(BiquadProcessor* other) noexcept REALTIME;

    void requestReset() noexcept REALTIME; // soft, unless one is pending
    void interrupt() noexcept REALTIME;    // the stream has a gap: a soft reset, and what was replaced is gone
    void reset() noexcept REALTIME;        // hard, and the fades end

    // Before rows of another design: a soft reset, and the cascade as it is now, its rows and their scale given, goes
    // on beside the new one for a fade of 20 ms. A jump if none of it has been heard since the last reset. Goes to the
    // linked partner too.
    void replace(const double* rowsInUse, float scaleInUse) noexcept REALTIME;

    // At most 8 sections or what was asked for at construction; before the rows of a block are queued.
    void setSectionCount(std::size_t wanted) noexcept REALTIME;

    // A block is beginBlock(), then once or several times: the rows of `count` samples by enqueue(), process(count).
    void beginBlock(const wave::BasicBlock<float>& inputBlock, wave::BasicBlock<float>& ownBlock,
                    std::int32_t count) noexcept REALTIME;
    // scale: the share of the filtered signal, on top of the fade.
    void enqueue(std::int32_t count, const double* row, float scale) noexcept REALTIME;
    // A row for each of `count` samples, which the caller fills in; null if the queue has not as much room.
    double* enqueueSingles(std::int32_t count, float scale) noexcept REALTIME;
    void process(std::int32_t count) noexcept REALTIME; // of a linked pair: both channels

    // For whoever runs the sections without this: nothing fades, nothing waits for a reset.
    bool isSteady() const noexcept REALTIME;
    void noteRun(std::int32_t count) noexcept REALTIME; // of a block, by somebody else
    double* memoryOf(std::size_t section) noexcept REALTIME;

    const wave::BasicBlock<float>& getResult() const noexcept REALTIME { return *result; } // the own block or the input
    bool isOff() const noexcept REALTIME { return mix == 0.0f && rampCount == 0; }
    bool isFullyOn() const noexcept REALTIME { return mix == 1.0f && rampCount == 0; }
    bool isFading() const noexcept REALTIME { return fade.isRunning(); } // what was replaced is still heard
    bool isLinked() const noexcept REALTIME { return partner != nullptr; }
    SectionForm getForm() const noexcept REALTIME { return form; }
    std::size_t getSectionCount() const noexcept REALTIME { return sectionCount; }
    float getMix() const noexcept REALTIME { return mix; }
    PendingReset getPendingReset() const noexcept REALTIME { return pendingReset; }
    const RowQueue& getRows() const noexcept REALTIME { return *rows; }
    const ScaleQueue& getScales() const noexcept REALTIME { return *scales; }

    wave::Environment& environment;
    Property<ResetMode> resetMode{nullptr, ResetMode::resetClear};
    const float* inputGain = nullptr; // a factor on the dry signal, a value a sample of the block; not owned

private:
    struct Queues {
        RowQueue rows;
        ScaleQueue scales;
    };

    BiquadProcessor(wave::Environment& owner, std::size_t sections, std::unique_ptr<Queues> queues);

    void switchTo(bool wanted) noexcept REALTIME;
    void changeForm(SectionForm wanted, const double* rowsInUse) noexcept REALTIME;
    bool isHeard() const noexcept REALTIME { return hasSounded && mix != 0.0f; }
    void passThrough(std::int32_t count) noexcept REALTIME;
    void moveToOwnBlock() noexcept REALTIME;
    void fillMemory() noexcept REALTIME;
    void runSections() noexcept REALTIME;
    void mixChannels(std::int32_t count) noexcept REALTIME;
    void mixRun(std::int32_t begin, std::int32_t count, double scale) noexcept REALTIME;
    void fadeFromReplaced(std::int32_t count) noexcept REALTIME;
    void blend(std::int32_t begin, std::int32_t count, double share, double step) noexcept REALTIME;
    DrySignal dry() const noexcept REALTIME { return {input->data(), inputGain}; }

    std::unique_ptr<Queues> ownQueues; // null: those of another
    RowQueue* rows;
    ScaleQueue* scales;
    BiquadProcessor* partner = nullptr; // of a linked pair; not owned
    SectionForm form = SectionForm::direct;
    std::size_t sectionCount = 1;
    bool enabled = true;

    float mix = 1.0f; // 0 dry, 1 filtered
    float mixTarget = 1.0f;
    float rampStep = 0.0f;      // change of mix a sample
    std::int32_t rampCount = 0; // samples left
    std::uint64_t stamp = 0;    // where the last block ended, so that a fade goes on while nobody listens

    const wave::BasicBlock<float>* input = nullptr; // of this block, and where it goes
    wave::BasicBlock<float>* own = nullptr;
    const wave::BasicBlock<float>* result = nullptr;
    std::int32_t samplePosition = 0; // in the block, where the next process() begins

    bool hasSounded = false; // since the last hard reset, be it as the dry signal
    PendingReset pendingReset = PendingReset::hard;
    AlignedBuffer<double> memory; // 4 values a section
    CascadeFade fade;
};

inline bool BiquadProcessor::isSteady() const noexcept REALTIME {
    return isFullyOn() && !isFading() && pendingReset == PendingReset::none && inputGain == nullptr;
}

inline void BiquadProcessor::noteRun(std::int32_t count) noexcept REALTIME {
    stamp = environment.position + static_cast<std::uint64_t>(count);
}

inline double* BiquadProcessor::memoryOf(std::size_t section) noexcept REALTIME {
    return memory.data() + section * BiquadSection::memoryLength;
}
