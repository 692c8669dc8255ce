// An object that collects changes and works through them once.
// Threads: that of the object.
#pragma once

#include "base/NotifyEvent.h"

#include <functional>
#include <memory>
#include <vector>

class UpdatedObject {
public:
    // Feeds a NotifyEvent at the next update of its owner, once, however often it was triggered.
    class DeferredEvent {
    public:
        DeferredEvent(UpdatedObject& updated, EventSender* whoSends);
        DeferredEvent(const DeferredEvent&) = delete;
        DeferredEvent& operator=(const DeferredEvent&) = delete;
        ~DeferredEvent();

        void trigger();

        NotifyEvent event;

    private:
        friend class UpdatedObject;
        bool pending = false;
        UpdatedObject& owner;
        EventSender* sender;
    };

    // While one lives, updates wait. Holds nest.
    class Hold {
    public:
        explicit Hold(UpdatedObject& updated) : object(updated) { object.beginHold(); }
        ~Hold() { object.endHold(); }
        Hold(const Hold&) = delete;
        Hold& operator=(const Hold&) = delete;

    private:
        UpdatedObject& object;
    };

    UpdatedObject() = default;
    UpdatedObject(const UpdatedObject&) = delete;
    UpdatedObject& operator=(const UpdatedObject&) = delete;

    void requestUpdate(); // at once, or at the end of the outermost hold; a request from inside update() is dropped
    void beginHold();
    void endHold();

protected:
    ~UpdatedObject() = default;

    // Fires the triggered events in the order of their construction. Whoever overrides it calls it first.
    virtual void update();

private:
    enum class UpdateState { idle, pending, running };

    void runUpdate();

    std::vector<DeferredEvent*> deferredEvents; // not owned, each removes itself
    UpdateState updateState = UpdateState::idle;
    int holdCount = 0;
};

// Calls each triggered target once at the next update, in the order in which they were triggered.
class EventForwarderList : public UpdatedObject {
public:
    class Forwarder {
    public:
        void trigger(EventSender* sender);

    private:
        friend class EventForwarderList;
        Forwarder(EventForwarderList& list, std::function<void(EventSender*)> function);

        EventForwarderList& owner;
        std::function<void(EventSender*)> target;
        EventSender* argument = nullptr; // of the last trigger
        bool pending = false;
    };

    ~EventForwarderList();

    Forwarder& add(std::function<void(EventSender*)> target); // owned by the list

protected:
    void update() override;

private:
    std::vector<std::unique_ptr<Forwarder>> forwarders;
    std::vector<Forwarder*> pendingForwarders;
};
