// Carries events from any thread to the main thread.
// Threads: post on any but audio, postRealtime on any, the rest on the main thread.
#pragma once

#include "base/NotifyEvent.h"
#include "base/Realtime.h"

#include <cstdint>

class AsyncEventQueue : public EventSender {
public:
    // Brings the main thread to drain(), where the system has no road of its own there.
    class Carrier {
    public:
        virtual void requestDrain() noexcept REALTIME = 0; // [any]

    protected:
        ~Carrier() = default;
    };

    virtual ~AsyncEventQueue() = default;

    // One delivery a post, in the order of the posts. False: the queue was full and the post is dropped.
    virtual bool post(std::int32_t id, std::intptr_t value) = 0;                           // [any but audio]
    virtual bool postRealtime(std::int32_t id, std::intptr_t value) noexcept REALTIME = 0; // [any]

    // For a queue that needs a carrier. Posts made before it is bound are kept; binding asks for them.
    virtual void bindCarrier(Carrier*) {} // [main] null unbinds
    virtual void drain() {}               // [main] delivers what stood in the queue when it began

    // Fires at each delivery with the queue as sender.
    NotifyEvent event;

    // Of the delivery that runs.
    std::int32_t id() const noexcept { return deliveredId; }
    std::intptr_t value() const noexcept { return deliveredValue; }

protected:
    void deliver(std::int32_t postedId, std::intptr_t postedValue) {
        deliveredId = postedId;
        deliveredValue = postedValue;
        event.fire(this);
    }

private:
    std::int32_t deliveredId = 0;
    std::intptr_t deliveredValue = 0;
};
