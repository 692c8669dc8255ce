#include "platform/Clock.h"

#include <gtest/gtest.h>

namespace {

std::uint32_t fakeTicks = 0;
std::uint32_t readFakeTicks() noexcept {
    return fakeTicks;
}

TEST(TickTimer, TellsTheTrueSmallDifferenceAcrossAWrapOfTheClock) {
    fakeTicks = 0xFFFFFFF0u;
    TickTimer timer(readFakeTicks);
    fakeTicks = 0x10u;
    EXPECT_EQ(timer.elapsed(), 0x20u);
    timer.reset();
    fakeTicks = 0x15u;
    EXPECT_EQ(timer.elapsed(), 5u);
}

} // namespace
