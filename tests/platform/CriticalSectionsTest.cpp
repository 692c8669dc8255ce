#include "platform/CriticalSections.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

TEST(CriticalSections, AreReentrantAndKeepOtherThreadsOut) {
    const auto section = createCriticalSection(LockRank::adapter);
    int shared = 0;
    const auto work = [&] {
        for (int i = 0; i < 20000; ++i) {
            const ScopedLock outer(*section);
            const ScopedLock inner(*section);
            ++shared;
        }
    };
    std::thread other(work);
    work();
    other.join();
    EXPECT_EQ(shared, 40000);
}

TEST(CriticalSectionsDeathTest, TakenInTheWrongOrderEndADebugBuild) {
#ifdef NDEBUG
    GTEST_SKIP() << "the order is watched in debug builds only";
#else
    const auto adapter = createCriticalSection(LockRank::adapter);
    {
        // Outer before inner, and an outer one again while it is held, are the rule.
        const ScopedLock first(processSection());
        const ScopedLock second(*adapter);
        const ScopedLock again(processSection());
    }
    EXPECT_DEATH(
        {
            const ScopedLock first(*adapter);
            const ScopedLock second(processSection());
        },
        "release_assert failed");
#endif
}

} // namespace
