#include "wave/MultiProducer.h"

#include "base/ReleaseAssert.h"

namespace wave {

MultiProducer::Output::Output(MultiProducer& whole, std::size_t place)
    : Producer(whole.environment), owner(whole), index(place) {}

void MultiProducer::Output::process(BasicBlock<float>&, std::int32_t count, std::uint32_t) noexcept REALTIME {
    // A head is run again by the environment after it was pulled; its samples are there already.
    if (hasRun())
        output = owner.results[index];
    else
        owner.run(count);
}

MultiProducer::MultiProducer(Environment& owner, std::size_t outputCount) : Component(owner) {
    release_assert(outputCount > 0);
    results.resize(outputCount);
    for (std::size_t index = 0; index < outputCount; ++index)
        outputs.push_back(std::make_unique<Output>(*this, index));
}

MultiProducer::~MultiProducer() = default;

float MultiProducer::firstValue(std::size_t index) const noexcept REALTIME {
    return outputs[index]->Producer::firstValue();
}

void MultiProducer::setActive(bool wanted) noexcept REALTIME {
    for (const auto& each : outputs)
        each->Producer::setActive(wanted);
}

// One member of the reset list stands for all.
void MultiProducer::setResettable(bool wanted) noexcept REALTIME {
    outputs.front()->Producer::setResettable(wanted);
}

void MultiProducer::run(std::int32_t count) noexcept REALTIME {
    for (std::size_t index = 0; index < outputs.size(); ++index)
        results[index] = outputs[index]->ownBlock;
    processAll(results, count);
    for (std::size_t index = 0; index < outputs.size(); ++index) {
        outputs[index]->output = results[index];
        outputs[index]->stamp();
    }
}

} // namespace wave
