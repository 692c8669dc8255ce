// Carries samples from the graph to whoever analyses them: before the equalizer, after it, and the side chain.
// Threads: process on audio; the rest on one reader's thread, or main where marked.
#pragma once

#include "base/LockFreeQueue.h"
#include "base/Property.h"
#include "base/Realtime.h"
#include "wave/AlignedBuffer.h"
#include "wave/AudioSource.h"
#include "wave/BasicBlock.h"
#include "wave/Producer.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

// The samples lie in a pool of groups. A group holds one block for each channel of each measurement, and belongs to one
// side at a time: `freeQueue` and `filledQueue` hand the ownership over, and with it what was written. A reader that
// does not keep up, or is not there, leaves the audio thread without a free group; it then sets `overflowed` and from
// there on does nothing but test that flag. The next reader takes the flag away before it looks at the filled groups,
// and gives them back unread: what they hold ends somewhere in the past.
//
// Between the reader's exchange of the flag and the end of its drain the audio thread may fill further groups; they
// are thrown away with the others. If it overflows a second time meanwhile, the flag is up again and the next drain
// throws away what this one did not see. So a reader never gets groups from both sides of a gap in one locked time.
class RealTimeAudioBuffer : public wave::Producer {
public:
    class Measurement;

    static constexpr std::size_t blockSize = 256;
    static constexpr std::size_t measurementCount = 3;                  // pre, post, side chain
    static constexpr std::size_t baseGroupCount = 8192 / blockSize + 4; // the longest window and a little time to read
    static constexpr std::size_t largestGroupCount = 8 * baseGroupCount;

    RealTimeAudioBuffer(wave::Environment& owner, std::size_t channelsOfLayout); // [main & !processing]
    ~RealTimeAudioBuffer() override;                                             // [main & !processing]

    void setUp(); // [main & !processing] makes the measurements, once, behind the constructor

    // True in this product. False: the oldest samples give way to the newest.
    void setStopWhenFull(bool wanted) noexcept { stopWhenFull = wanted; } // [main & !processing]

    void process(wave::BasicBlock<float>& block, std::int32_t count, std::uint32_t mode) noexcept REALTIME override;

    Measurement& measurement(std::size_t index) noexcept { return *measurements[index]; } // [any]
    std::size_t channelCount() const noexcept { return channels; }                        // [any]
    std::size_t groupCount() const noexcept { return groups.size(); }                     // [main]

protected:
    virtual std::unique_ptr<Measurement> createMeasurement(std::int32_t index);

private:
    // The memory of one group, and which of its blocks hold silence: those are never written.
    struct Group {
        explicit Group(std::size_t blocks)
            : samples(static_cast<std::int32_t>(blocks * blockSize)), silent(blocks, 0) {}
        AlignedBuffer<float> samples;
        std::vector<std::uint8_t> silent; // one a block
    };

    // Why `process` has nothing to do. One word, so that this costs one test a block.
    static constexpr std::uint32_t overflowed = 1; // set by audio, taken by the reader
    static constexpr std::uint32_t unwatched = 2;  // no measurement is active; set and cleared by the reader

    static constexpr std::int32_t none = -1;

    std::size_t placeOf(std::size_t measurementIndex, std::size_t channel) const noexcept REALTIME {
        return measurementIndex * channels + channel;
    }
    void fill(Group& group, std::size_t taken, std::size_t count) noexcept REALTIME;
    bool takeGroup() noexcept REALTIME; // false: there is none
    void lockGroups();
    void unlockGroups();
    void followActivity();
    void sampleRateChanged(); // [main & !processing]
    void addGroups();

    const std::size_t channels;
    bool stopWhenFull = true;
    std::vector<std::unique_ptr<Measurement>> measurements;

    std::vector<Group> groups;                   // only ever added to, within what the constructor reserved
    LockFreeQueue<std::int32_t> freeQueue{1024}; // of groups; 1024 is far more than there ever are
    LockFreeQueue<std::int32_t> filledQueue{1024};
    std::atomic<std::uint32_t> pauses{0}; // who finds `overflowed` also sees all groups that were filled before it

    // The audio side.
    std::vector<const wave::BasicBlock<float>*> pulled; // this cycle's inputs, measurement by measurement
    std::int32_t currentGroup = none;
    std::size_t fillPosition = 0; // samples in the current group

    // The reader's side.
    std::vector<std::int32_t> consumed; // groups that the reader holds, in time order
    std::int32_t lockCount = 0;
};

class RealTimeAudioBuffer::Measurement : public AudioSource, public PropertyOwner {
public:
    Measurement(RealTimeAudioBuffer& owner, std::int32_t ownIndex);

    Property<bool> active; // [reader] the buffer rests while no measurement is

    // [audio, or main & !processing] Not owned; null is silence.
    void setInput(std::size_t channel, wave::Producer* producer) noexcept REALTIME { inputs[channel] = producer; }
    wave::Producer* input(std::size_t channel) const noexcept REALTIME { return inputs[channel]; }

    void lock() override { buffer.lockGroups(); }
    void unlock() override { buffer.unlockGroups(); }
    std::size_t blockSize() const override { return RealTimeAudioBuffer::blockSize; }
    std::span<const float> blockData(std::size_t blockIndex, std::size_t channel) const override;
    std::size_t blockCount() const override { return buffer.consumed.size(); }
    std::size_t channelCount() const override { return buffer.channels; }
    void propertyChanged(AbstractProperty&) override { buffer.followActivity(); }

private:
    RealTimeAudioBuffer& buffer;
    const std::int32_t index;
    std::vector<wave::Producer*> inputs; // one a channel
};
