#include "platform/posix/PosixAsyncEventQueue.h"

#include "platform/AsyncEventQueues.h"

std::unique_ptr<AsyncEventQueue> createAsyncEventQueue() {
    return std::make_unique<PosixAsyncEventQueue>();
}

bool PosixAsyncEventQueue::post(std::int32_t id, std::intptr_t value) {
    if (!queue.push({id, value}))
        return false;
    askCarrier();
    return true;
}

bool PosixAsyncEventQueue::postRealtime(std::int32_t id, std::intptr_t value) noexcept REALTIME {
    if (!queue.pushRealtime({id, value}))
        return false;
    askCarrier();
    return true;
}

void PosixAsyncEventQueue::askCarrier() noexcept REALTIME {
    postedCount.fetch_add(1);
    if (Carrier* const bound = carrier.load(); bound != nullptr)
        bound->requestDrain();
}

void PosixAsyncEventQueue::bindCarrier(Carrier* wanted) {
    carrier.store(wanted);
    if (wanted != nullptr && postedCount.load() != deliveredCount)
        wanted->requestDrain();
}

void PosixAsyncEventQueue::drain() {
    const std::uint32_t stood = postedCount.load();
    queue.reserve();
    Posted posted{};
    while (deliveredCount != stood && queue.pop(posted)) {
        ++deliveredCount;
        deliver(posted.id, posted.value);
    }
}
