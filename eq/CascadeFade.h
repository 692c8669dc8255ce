// The cascades that newer ones have replaced: each goes on as it was until the sound has gone over to the next.
// Threads: those of BiquadProcessor.
#pragma once

#include "base/Realtime.h"
#include "eq/DryMix.h"
#include "eq/SectionCoefficients.h"
#include "wave/AlignedBuffer.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

// The sound always goes from the oldest cascade to the next one, to the end. What comes while it does waits for its
// turn unheard, and if it is replaced meanwhile it leaves no trace: so no change makes a jump, however close they come,
// and at most two cascades run beside the newest.
class CascadeFade {
public:
    // One as it stands at the change.
    struct Cascade {
        const double* rows;
        const double* memory; // of this channel
        std::size_t sectionCount;
        SectionForm form;
        float scale; // share of the filtered signal; at 0 it does not run
    };

    // What a channel of a block brings.
    struct Channel {
        CascadeFade* fade; // whose memory is that of the channel
        DrySignal dry;
        float* filtered; // what the newest cascade gives, its share of the dry signal included
        float* spare;    // room for as many samples
    };

    explicit CascadeFade(std::size_t mostSections);

    // length: samples of this fade. One that goes on already keeps its own.
    void begin(const Cascade& replaced, std::int32_t length) noexcept REALTIME;
    void drop() noexcept REALTIME { outgoing = 0; }

    // Puts what is heard in place of `filtered`. The first channel is that of this fade; a second one is its linked
    // partner's, which has replaced the same cascades at the same time.
    void process(std::span<const Channel> channels, std::int32_t count) noexcept REALTIME;

    bool isRunning() const noexcept REALTIME { return outgoing > 0; }

private:
    struct Slot {
        explicit Slot(std::size_t mostSections);

        AlignedBuffer<double> rows;
        AlignedBuffer<double> memory;
        std::size_t sectionCount = 0;
        SectionForm form = SectionForm::direct;
        float scale = 0.0f;
    };

    void run(std::size_t slot, std::span<const Channel> channels, float* Channel::*target, std::int32_t begin,
             std::int32_t count) noexcept REALTIME;
    void cross(const Channel& channel, std::int32_t begin, std::int32_t count) const noexcept REALTIME;
    void takeState(const CascadeFade& leader) noexcept REALTIME;

    std::array<Slot, 2> slots;
    std::size_t oldest = 0;      // the slot that fades out
    std::size_t outgoing = 0;    // slots in use; of two, the sound goes to the second, else to the newest cascade
    std::int32_t position = 0;   // samples into the fade
    std::int32_t fadeLength = 0; // samples
};
