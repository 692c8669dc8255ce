// An event queue that the host's main-thread callback empties.
// Threads: see AsyncEventQueue.
#pragma once

#include "base/AsyncEventQueue.h"
#include "base/LockFreeQueue.h"

#include <atomic>
#include <cstdint>

// A post pushes, counts, and then asks the carrier. Binding stores the carrier and then looks at the count. Both pairs
// are sequentially consistent, so of a post and a binding that meet at least one sees the other, and nothing that was
// posted waits unasked. The count also tells drain how many items stood in the queue when it began: an item is counted
// after its push, so as many as were counted can be taken.
class PosixAsyncEventQueue final : public AsyncEventQueue {
public:
    bool post(std::int32_t id, std::intptr_t value) override;
    bool postRealtime(std::int32_t id, std::intptr_t value) noexcept REALTIME override;
    void bindCarrier(Carrier* wanted) override;
    void drain() override;

private:
    struct Posted {
        std::int32_t id;
        std::intptr_t value;
    };

    void askCarrier() noexcept REALTIME;

    LockFreeQueue<Posted> queue{256};
    std::atomic<std::uint32_t> postedCount{0}; // wraps
    std::uint32_t deliveredCount = 0;
    std::atomic<Carrier*> carrier{nullptr};
};
