#include "wave/Environment.h"

#include "base/FloatTolerance.h"
#include "base/ReleaseAssert.h"
#include "wave/Producer.h"

#include <algorithm>
#include <cmath>

namespace wave {

Environment::Environment(std::int32_t blockSize)
    : maxBlockSize(blockSize), zeroBlock(*this), scratchBlocks{BasicBlock<float>(*this), BasicBlock<float>(*this)} {
    release_assert(blockSize > 0);
}

Environment::~Environment() = default;

void Environment::setSampleRate(float rate) {
    if (!(rate > 0.0f) || !std::isfinite(rate))
        return;
    const bool moved = !nearlyEqual(rate, sampleRate);
    sampleRate = rate;
    if (!moved)
        return;
    lastResetPosition = position;
    lastRestartPosition = position;
    for (Producer* producer : resetList)
        producer->reset();
    sampleRateChanged.fire(nullptr);
}

void Environment::runCycle(std::int32_t count, bool skipScheduled) noexcept REALTIME {
    // By index, and the index moves with the list: a producer may schedule itself or others while it runs.
    if (!skipScheduled)
        for (walkIndex = 0; walkIndex < std::ssize(scheduledList); ++walkIndex)
            scheduledList[static_cast<std::size_t>(walkIndex)]->runScheduled(count);
    walkIndex = -1;
    position += static_cast<std::uint64_t>(count);
}

void Environment::resetAll() noexcept REALTIME {
    lastResetPosition = position;
    lastRestartPosition = position;
    for (Producer* producer : resetList)
        if (producer->isActive())
            producer->reset();
}

bool Environment::allAtRest() const noexcept REALTIME {
    return std::all_of(resetList.begin(), resetList.end(), [](const Producer* each) { return each->isAtRest(); });
}

void Environment::addProducer() {
    const auto makeRoom = [](std::vector<Producer*>& list, std::size_t count) {
        if (list.capacity() < count)
            list.reserve(std::max(count, 2 * list.capacity()));
    };
    makeRoom(scheduledList, producerCount + 1);
    makeRoom(resetList, producerCount + 1);
    ++producerCount;
}

void Environment::insertScheduled(Producer& producer) noexcept REALTIME {
    std::ptrdiff_t place = 0;
    if (producer.schedule == Producer::Schedule::head)
        ++headCount;
    else
        place = producer.schedule == Producer::Schedule::middle ? headCount : std::ssize(scheduledList);
    trustedRealtime([&] { scheduledList.insert(scheduledList.begin() + place, &producer); }); // it has the room
    if (place <= walkIndex)
        ++walkIndex;
}

void Environment::removeScheduled(const Producer& producer) noexcept REALTIME {
    const auto found = std::find(scheduledList.begin(), scheduledList.end(), &producer);
    if (found == scheduledList.end())
        return;
    const std::ptrdiff_t place = found - scheduledList.begin();
    if (place < headCount)
        --headCount;
    scheduledList.erase(found);
    if (place <= walkIndex)
        --walkIndex;
}

void Environment::insertResettable(Producer& producer) noexcept REALTIME {
    trustedRealtime([&] { resetList.push_back(&producer); }); // it has the room
}

void Environment::removeResettable(const Producer& producer) noexcept REALTIME {
    std::erase(resetList, &producer);
}

} // namespace wave
