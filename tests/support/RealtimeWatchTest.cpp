#include "tests/support/RealtimeWatch.h"

#include "base/Realtime.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace {

// Through volatile pointers, so that the compiler cannot take pairs of calls away.
void* volatile kept = nullptr;

void allocate() {
    kept = ::operator new(100);
}

void release() {
    ::operator delete(kept);
    kept = nullptr;
}

TEST(RealtimeWatch, CountsEveryWayToMemoryAndLocks) {
    std::mutex mutex;
    const RealtimeWatch::Count count;
    allocate();
    release();
    EXPECT_EQ(count.offences().allocations + count.offences().frees, 0) << "outside a scope all is allowed";
    {
        const RealtimeScope scope;
        allocate();
        release();
        EXPECT_EQ(count.offences().allocations, 1);
        EXPECT_EQ(count.offences().frees, 1);
        kept = std::calloc(1, 10);
        kept = std::realloc(kept, 1000);
        release();
        kept = std::aligned_alloc(64, 128);
        std::free(kept);
        void* aligned = nullptr;
        ASSERT_EQ(posix_memalign(&aligned, 64, 128), 0);
        std::free(aligned);
    }
    EXPECT_EQ(count.offences().allocations, 5);
    EXPECT_EQ(count.offences().frees, 4);
    EXPECT_EQ(count.offences().locks, 0);
    {
        const RealtimeScope scope;
        const std::lock_guard guard(mutex);
        EXPECT_EQ(count.offences().locks, 1);
    }
    EXPECT_EQ(count.offences().locks, 2);
}

TEST(RealtimeWatch, APermitLiftsTheRuleAndScopesNest) {
    const RealtimeWatch::Count count;
    const RealtimeScope outer;
    {
        const RealtimeScope inner;
        const RealtimePermit permit{"proof that permits work"};
        allocate();
        release();
    }
    EXPECT_EQ(count.offences().allocations, 0);
    allocate();
    release();
    EXPECT_EQ(count.offences().allocations, 1) << "the inner scope's end must not end the outer one";
}

TEST(RealtimeWatchDeathTest, TheFirstOffenceAbortsWithItsStack) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    std::mutex mutex;
    const auto inside = [](auto&& work) {
        const RealtimeScope scope;
        work();
    };
    EXPECT_DEATH(inside(allocate), "audio thread: malloc(.|\n)*test_support");
    allocate();
    EXPECT_DEATH(inside(release), "audio thread: free(.|\n)*test_support");
    release();
    EXPECT_DEATH(inside([&] { mutex.lock(); }), "audio thread: pthread_mutex_lock");
}

} // namespace
