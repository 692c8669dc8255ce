#include "base/LockFreeQueue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace {

struct Item {
    std::uint32_t producer = 0;
    std::uint32_t number = 0;
    std::uint64_t check = 0;
};

std::uint64_t checkOf(std::uint32_t producer, std::uint32_t number) {
    return (std::uint64_t{producer} << 32 | number) * 0x9E3779B97F4A7C15u;
}

TEST(LockFreeQueue, FailsWhenThePoolIsAtItsMaximumAndRecovers) {
    for (const std::uint32_t limit : {32u, 65536u}) {
        LockFreeQueue<std::uint32_t> queue(32, limit);
        std::uint32_t pushed = 0;
        while (queue.push(pushed))
            ++pushed;
        EXPECT_EQ(pushed, limit == 32 ? 32u : 65534u);
        std::uint32_t item = 1;
        ASSERT_TRUE(queue.pop(item));
        EXPECT_EQ(item, 0u);
        EXPECT_TRUE(queue.push(pushed));
        EXPECT_FALSE(queue.push(pushed));
        for (std::uint32_t i = 1; i <= pushed; ++i) {
            ASSERT_TRUE(queue.pop(item));
            ASSERT_EQ(item, i);
        }
    }
}

TEST(LockFreeQueue, TheAudioThreadNeverGrowsThePoolButOthersGrowItAheadOfNeed) {
    LockFreeQueue<int> queue(16);
    int pushed = 0;
    while (queue.pushRealtime(pushed))
        ++pushed;
    EXPECT_EQ(pushed, 16);
    EXPECT_EQ(queue.capacity(), 16u);
    queue.reserve();
    EXPECT_EQ(queue.capacity(), 32u);
    EXPECT_TRUE(queue.pushRealtime(pushed));

    LockFreeQueue<int> other(16);
    for (int i = 0; i < 14; ++i)
        EXPECT_TRUE(other.push(i));
    EXPECT_EQ(other.capacity(), 32u);
}

TEST(LockFreeQueue, LosesNothingBetweenManyPushersAndManyPoppers) {
    constexpr std::uint32_t pushers = 3;
    constexpr std::uint32_t each = 60000;
    LockFreeQueue<Item> queue(8);
    std::atomic<std::uint32_t> taken{0};
    std::vector<std::vector<Item>> received(3);
    std::vector<std::thread> threads;
    for (std::uint32_t producer = 0; producer < pushers; ++producer)
        threads.emplace_back([&, producer] {
            for (std::uint32_t number = 0; number < each; ++number) {
                const Item item{producer, number, checkOf(producer, number)};
                // One pusher plays the audio thread and tries until others have made room.
                while (!(producer == 0 ? queue.pushRealtime(item) : queue.push(item)))
                    std::this_thread::yield();
            }
        });
    for (auto& own : received)
        threads.emplace_back([&] {
            Item item;
            while (taken.load() < pushers * each) {
                if (!queue.pop(item)) {
                    std::this_thread::yield();
                    continue;
                }
                own.push_back(item);
                ++taken;
            }
        });
    for (std::thread& thread : threads)
        thread.join();

    std::vector<std::uint32_t> counts(pushers, 0);
    for (const auto& own : received) {
        std::vector<std::int64_t> last(pushers, -1);
        for (const Item& item : own) {
            ASSERT_LT(item.producer, pushers);
            ASSERT_EQ(item.check, checkOf(item.producer, item.number)) << "a torn item";
            ASSERT_GT(std::int64_t{item.number}, last[item.producer]) << "one pusher's items changed their order";
            last[item.producer] = item.number;
            ++counts[item.producer];
        }
    }
    for (const std::uint32_t count : counts)
        EXPECT_EQ(count, each);
}

} // namespace
