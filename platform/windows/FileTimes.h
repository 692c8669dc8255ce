// Times of files.
// Threads: any.
#pragma once

#include "platform/windows/Windows.h"

#include <cstdint>

inline std::int64_t secondsSince1970(FILETIME time) noexcept {
    constexpr std::int64_t ticksPerSecond = 10000000; // of 100 ns
    constexpr std::int64_t from1601 = 11644473600;    // s; 369 years with their 89 leap days
    const auto ticks = static_cast<std::int64_t>(std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime);
    return ticks / ticksPerSecond - from1601;
}
