#include "wave/Producer.h"

namespace wave {

Producer::Producer(Environment& owner) : Producer(owner, NoBlock{}) {
    madeBlock = std::make_unique<BasicBlock<float>>(owner);
    ownBlock = madeBlock.get();
}

// The cycle before the present one: the first pull runs, even before the first cycle.
Producer::Producer(Environment& owner, NoBlock) : Component(owner), lastCycle(owner.cycle - 1) {
    environment.addProducer();
}

Producer::~Producer() {
    if (!environment.destroying) {
        if (scheduled && active)
            environment.removeScheduled(*this);
        if (resettable)
            environment.removeResettable(*this);
    }
    environment.removeProducer();
}

float Producer::firstValue() const noexcept REALTIME {
    return output != nullptr ? (*output)[0] : 0.0f;
}

void Producer::setActive(bool wanted) noexcept REALTIME {
    if (wanted == active)
        return;
    active = wanted;
    if (!active) {
        if (scheduled)
            environment.removeScheduled(*this);
        return;
    }
    if (scheduled)
        environment.insertScheduled(*this);
    if (resettable)
        reset();
}

void Producer::setSchedule(Schedule wanted) noexcept REALTIME {
    if (active && scheduled)
        environment.removeScheduled(*this);
    schedule = wanted;
    scheduled = true;
    if (active)
        environment.insertScheduled(*this);
}

void Producer::unschedule() noexcept REALTIME {
    if (active && scheduled)
        environment.removeScheduled(*this);
    scheduled = false;
}

void Producer::setResettable(bool wanted) noexcept REALTIME {
    if (wanted == resettable)
        return;
    resettable = wanted;
    if (wanted)
        environment.insertResettable(*this);
    else
        environment.removeResettable(*this);
}

void Producer::runScheduled(std::int32_t count) noexcept REALTIME {
    const bool isHead = schedule == Schedule::head;
    if (!isHead && hasRun())
        return;
    output = ownBlock;
    process(*ownBlock, count, isHead ? modeHead : modeScheduled);
    stamp();
}

} // namespace wave
