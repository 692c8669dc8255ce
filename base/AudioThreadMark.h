// Tells which thread is inside the audio callback right now, for code that both threads reach.
// Threads: set and cleared by whoever plays the audio thread, asked by any.
#pragma once

#include "base/Realtime.h"

#include <atomic>
#include <thread>

class AudioThreadMark {
public:
    // Marks the calling thread while it lives. Scopes of one thread nest.
    class Scope {
    public:
        explicit Scope(AudioThreadMark& marked) noexcept REALTIME
            : mark(marked),
              before(marked.thread.exchange(thisThread(), std::memory_order_relaxed)) {}
        ~Scope() { mark.thread.store(before, std::memory_order_relaxed); }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        AudioThreadMark& mark;
        std::thread::id before;
    };

    bool isCurrent() const noexcept REALTIME { // [any]
        return thread.load(std::memory_order_relaxed) == thisThread();
    }

private:
    static std::thread::id thisThread() noexcept REALTIME {
        return trustedRealtime([] { return std::this_thread::get_id(); });
    }

    // A thread finds its own id here only if it wrote it itself, so no order with other threads is needed.
    std::atomic<std::thread::id> thread{};
};
