#include "platform/LockOrder.h"

#ifndef NDEBUG

#include "base/ReleaseAssert.h"

#include <array>
#include <cstddef>

namespace {

// How often this thread holds each rank.
thread_local std::array<int, static_cast<std::size_t>(LockRank::unranked)> held{};

} // namespace

void lockTaken(LockRank rank) noexcept {
    if (rank == LockRank::unranked)
        return;
    for (std::size_t inner = static_cast<std::size_t>(rank) + 1; inner < held.size(); ++inner)
        release_assert(held[inner] == 0 || held[static_cast<std::size_t>(rank)] > 0);
    ++held[static_cast<std::size_t>(rank)];
}

void lockReleased(LockRank rank) noexcept {
    if (rank != LockRank::unranked)
        --held[static_cast<std::size_t>(rank)];
}

#else

void lockTaken(LockRank) noexcept {}
void lockReleased(LockRank) noexcept {}

#endif
