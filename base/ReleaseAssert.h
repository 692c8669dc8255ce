// Fatal assertion for what construction must guarantee; it stays in release builds.
// Threads: any.
#pragma once

// Ends the process with the text "release_assert failed" when the condition does not hold.
#define release_assert(condition) ((condition) ? static_cast<void>(0) : releaseAssertFailed(#condition))

[[noreturn]] void releaseAssertFailed(const char* condition) noexcept;
