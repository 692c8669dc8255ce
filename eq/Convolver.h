// Convolves one channel with a long kernel that may change, at a constant cost in every block.
// Threads: audio; construction and destruction with the audio excluded.
#pragma once

#include "base/Realtime.h"
#include "wave/BasicBlock.h"
#include "wave/Delay.h"
#include "wave/Filter.h"

#include <cstdint>
#include <memory>

class ConvolverLevel;

// Overlap-save in partitions of equal size, on levels: the deepest level has the smallest partitions and the
// beginning of the kernel, each level above it 8 times larger ones and the part that follows. A level collects one
// hop of samples, transforms and multiplies it while the next hop comes in, and sounds in the hop after that. The work
// is cut into small tasks that are spread over the hop.
//
// A new kernel enters by a linear crossfade between two complete convolutions, at the same samples on all levels.
class Convolver final : public wave::Filter {
public:
    class Configuration; // sizes: ConvolverConfiguration.h
    class Kernel;        // what is convolved with: ConvolverKernel.h
    class Slot;          // one state of it
    class UpdateTask;    // a step of its making

    // The kernel is this convolver's own; connecting another one takes it over. The kernel and its configuration stay
    // where they are as long as the convolver is used.
    Convolver(wave::Environment& owner, Kernel& kernel);
    ~Convolver() override;

    bool isAtRest() const noexcept REALTIME override; // the last sound has left the kernel
    void filter(const wave::BasicBlock<float>& inputBlock, wave::BasicBlock<float>& outputBlock, std::int32_t count,
                std::uint32_t mode) noexcept REALTIME override;

    // Reads the kernel of another convolver in place of its own, which then rests: for two channels whose kernels would
    // be the same. Null: its own again. Either way it goes on with what it has until a kernel is done that was begun
    // after this, and fades to that. Not owned.
    //
    // Both run in every cycle, came into being in the same one and have one configuration, so that their hops and
    // breaks fall on the same samples. Whichever is pulled first, the leader runs first. It takes at most one kernel in
    // a cycle, since a hop is longer than a block, and this one finds that very kernel at the same boundary. The other
    // one leads nobody when it goes, and does not follow itself.
    void follow(Convolver* wanted) noexcept REALTIME; // between cycles
    [[nodiscard]] bool isFollowing() const noexcept REALTIME { return leader != nullptr; }

    std::int32_t getLatency() const noexcept REALTIME; // samples, on top of the delay in the kernel itself

    std::int64_t getWorkEverDone() const noexcept REALTIME; // units, to measure how even they come; the kernel's too

private:
    std::int32_t ringing() const noexcept REALTIME; // samples from the input's end to that of the output

    Kernel& kernel;
    std::unique_ptr<wave::Delay> inputDelay; // with several levels: what all but the deepest of them read
    wave::BasicBlock<float> delayedBlock;
    std::unique_ptr<ConvolverLevel> top;
    Convolver* leader = nullptr; // not owned; null: its own kernel is read
    std::uint64_t nextPosition = 0;
    std::int32_t silence = 0; // samples since the last sound of the input, at most ringing()
};
