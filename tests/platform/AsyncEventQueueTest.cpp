#include "platform/AsyncEventQueues.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <utility>
#include <vector>

namespace {

using Delivery = std::pair<std::int32_t, std::intptr_t>;

class CountingCarrier final : public AsyncEventQueue::Carrier {
public:
    void requestDrain() noexcept REALTIME override { ++asked; }
    std::atomic<int> asked{0};
};

class AsyncEventQueueTest : public testing::Test {
protected:
    AsyncEventQueueTest() { queue->event.add(this, &AsyncEventQueueTest::take); }

    void take(EventSender* sender) {
        ASSERT_EQ(sender, queue.get());
        deliveries.emplace_back(queue->id(), queue->value());
        if (queue->id() == repostId)
            queue->post(99, 0);
    }

    std::unique_ptr<AsyncEventQueue> queue = createAsyncEventQueue();
    CountingCarrier carrier;
    std::vector<Delivery> deliveries;
    std::int32_t repostId = -1;
};

TEST_F(AsyncEventQueueTest, PostsBeforeTheCarrierIsKnownAreKeptAndAskedForWhenItIs) {
    queue->post(1, 10);
    queue->post(2, -20);
    EXPECT_TRUE(deliveries.empty());
    queue->bindCarrier(&carrier);
    EXPECT_EQ(carrier.asked, 1);
    queue->drain();
    EXPECT_EQ(deliveries, (std::vector<Delivery>{{1, 10}, {2, -20}}));
    queue->post(3, 0);
    EXPECT_EQ(carrier.asked, 2);
    queue->bindCarrier(nullptr);
    queue->post(4, 0);
    EXPECT_EQ(carrier.asked, 2);
}

TEST_F(AsyncEventQueueTest, WhatAHandlerPostsWaitsForTheNextDrain) {
    queue->bindCarrier(&carrier);
    repostId = 7;
    queue->post(7, 0);
    queue->drain();
    EXPECT_EQ(deliveries, (std::vector<Delivery>{{7, 0}}));
    EXPECT_EQ(carrier.asked, 2);
    queue->drain();
    EXPECT_EQ(deliveries.back(), (Delivery{99, 0}));
}

TEST_F(AsyncEventQueueTest, EveryPostOfEveryThreadIsDeliveredOnceAndInOrder) {
    constexpr int each = 20000;
    queue->bindCarrier(&carrier);
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 2; ++thread)
        threads.emplace_back([this, thread] {
            for (int i = 0; i < each; ++i)
                while (!(thread == 0 ? queue->postRealtime(thread, i) : queue->post(thread, i)))
                    std::this_thread::yield();
        });
    while (deliveries.size() < 2 * each)
        queue->drain();
    for (std::thread& thread : threads)
        thread.join();
    std::intptr_t next[2] = {0, 0};
    for (const auto& [id, value] : deliveries)
        ASSERT_EQ(value, next[id]++);
}

} // namespace
