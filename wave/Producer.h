// A component that makes one block a cycle, when somebody asks for it.
// Threads: audio, or any with the audio excluded; construction and destruction with the audio excluded.
#pragma once

#include "base/Realtime.h"
#include "wave/BasicBlock.h"
#include "wave/Component.h"
#include "wave/Environment.h"

#include <cstdint>
#include <memory>

namespace wave {

class Producer : public Component {
public:
    // When a scheduled producer runs without being pulled: heads in every cycle before all others, middle and tail
    // only if no pull has reached them before their turn.
    enum class Schedule : std::uint32_t { head = 0, middle = 1, tail = 2 };

    // The `mode` of process(): who calls.
    static constexpr std::uint32_t modePulled = 0;
    static constexpr std::uint32_t modeScheduled = 1;
    static constexpr std::uint32_t modeHead = 2; // a bit: the early call, ahead of the rest of the graph

    explicit Producer(Environment& owner);
    ~Producer() override;

    virtual float firstValue() const noexcept REALTIME;              // sample 0 of the output, 0 before there is one
    virtual bool isAtRest() const noexcept REALTIME { return true; } // false: sounds on after its input went silent
    virtual void setActive(bool wanted) noexcept REALTIME; // an inactive producer is neither scheduled nor reset
    virtual void prepare(std::int32_t) noexcept REALTIME {}

    // Makes `count` samples, 1 to the maximal block size. `block` is the own one; to hand on another, point `output`
    // there. Only pull() and the environment call this.
    virtual void process(BasicBlock<float>& block, std::int32_t count, std::uint32_t mode) noexcept REALTIME = 0;

    virtual void reset() noexcept REALTIME {} // memory to the state before the first sample; allocates nothing

    void setSchedule(Schedule wanted) noexcept REALTIME; // runs in every cycle from now on
    void unschedule() noexcept REALTIME;
    void setResettable(bool wanted) noexcept REALTIME; // member of what the environment resets and asks for rest

    // The block of this cycle, made now if nobody asked before. Valid to the end of the cycle: never keep it longer.
    const BasicBlock<float>& pull(std::int32_t count) noexcept REALTIME;

    bool isActive() const noexcept REALTIME { return active; }
    bool hasRun() const noexcept REALTIME { return lastCycle == environment.cycle; } // in this cycle
    const BasicBlock<float>* getOutput() const noexcept REALTIME { return output; }  // null before the first run

protected:
    struct NoBlock {};
    Producer(Environment& owner, NoBlock); // the deriving constructor sets ownBlock to a block of its own

    void stamp() noexcept REALTIME { lastCycle = environment.cycle; } // has run, as if pulled

    BasicBlock<float>* ownBlock = nullptr;     // what this producer writes into
    const BasicBlock<float>* output = nullptr; // holds this cycle's result; often a block of somebody else's

private:
    friend class Environment;

    void runScheduled(std::int32_t count) noexcept REALTIME;

    std::unique_ptr<BasicBlock<float>> madeBlock;
    Schedule schedule = Schedule::head;
    bool active = true;
    bool scheduled = false; // wants to be on the environment's list; is there while active
    bool resettable = false;
    std::uint32_t lastCycle; // of the last run
};

inline const BasicBlock<float>& Producer::pull(std::int32_t count) noexcept REALTIME {
    if (lastCycle != environment.cycle) {
        output = ownBlock;
        process(*ownBlock, count, modePulled);
        lastCycle = environment.cycle;
    }
    return *output;
}

// What an unconnected input reads: silence.
inline const BasicBlock<float>& pullOrSilence(Producer* producer, Environment& environment,
                                              std::int32_t count) noexcept REALTIME {
    return producer != nullptr ? producer->pull(count) : environment.zeroBlock;
}

} // namespace wave
