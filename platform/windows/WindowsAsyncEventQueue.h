// An event queue that the main thread's message loop empties.
// Threads: see AsyncEventQueue. Made and destroyed on the main thread.
#pragma once

#include "base/AsyncEventQueue.h"
#include "platform/windows/Windows.h"

#include <atomic>
#include <cstdint>

// A post puts its id and value as one message into the queue of the thread that owns the message-only window, so the
// system keeps their order and delivers each once: by the host's message loop, or by drain, which takes them out of
// that queue. A host need not run such a loop where it calls drain (renderers and scanners do not), so the carrier is
// asked too, and whoever comes first delivers. A post is counted after its message stands in the queue; drain takes as
// many as were counted when it began.
class WindowsAsyncEventQueue final : public AsyncEventQueue {
public:
    WindowsAsyncEventQueue();
    ~WindowsAsyncEventQueue() override;
    WindowsAsyncEventQueue(const WindowsAsyncEventQueue&) = delete;
    WindowsAsyncEventQueue& operator=(const WindowsAsyncEventQueue&) = delete;

    bool post(std::int32_t id, std::intptr_t value) override; // false too when the system's queue holds 10,000
    bool postRealtime(std::int32_t id, std::intptr_t value) noexcept REALTIME override;
    void bindCarrier(Carrier* wanted) override;
    void drain() override;

private:
    static LRESULT CALLBACK handleMessage(HWND window, UINT message, WPARAM id, LPARAM value);
    static bool registerClass() noexcept;   // of all queues, counted; under a lock of its own
    static void unregisterClass() noexcept; // with the last

    void take(WPARAM id, LPARAM value) noexcept;

    HWND window = nullptr;                     // null: nothing can be posted
    std::atomic<std::uint32_t> postedCount{0}; // wraps; pairs with bindCarrier and drain
    std::uint32_t deliveredCount = 0;
    std::atomic<Carrier*> carrier{nullptr};
};
