#include "base/UpdatedObject.h"

#include <algorithm>
#include <utility>

UpdatedObject::DeferredEvent::DeferredEvent(UpdatedObject& updated, EventSender* whoSends)
    : owner(updated), sender(whoSends) {
    owner.deferredEvents.push_back(this);
}

UpdatedObject::DeferredEvent::~DeferredEvent() {
    std::erase(owner.deferredEvents, this);
}

void UpdatedObject::DeferredEvent::trigger() {
    pending = true;
    owner.requestUpdate();
}

void UpdatedObject::requestUpdate() {
    if (holdCount != 0)
        updateState = UpdateState::pending;
    else if (updateState != UpdateState::running)
        runUpdate();
}

void UpdatedObject::beginHold() {
    ++holdCount;
}

void UpdatedObject::endHold() {
    if (--holdCount == 0 && updateState == UpdateState::pending)
        runUpdate();
}

void UpdatedObject::update() {
    // By index: a handler may construct further events of this object.
    for (std::size_t index = 0; index < deferredEvents.size(); ++index) {
        DeferredEvent& deferred = *deferredEvents[index];
        if (!deferred.pending)
            continue;
        deferred.event.fire(deferred.sender);
        deferred.pending = false;
    }
}

void UpdatedObject::runUpdate() {
    updateState = UpdateState::running;
    update();
    updateState = UpdateState::idle;
}

EventForwarderList::Forwarder::Forwarder(EventForwarderList& list, std::function<void(EventSender*)> function)
    : owner(list), target(std::move(function)) {}

void EventForwarderList::Forwarder::trigger(EventSender* sender) {
    argument = sender;
    if (!pending) {
        pending = true;
        owner.pendingForwarders.push_back(this);
    }
    owner.requestUpdate();
}

EventForwarderList::~EventForwarderList() = default;

EventForwarderList::Forwarder& EventForwarderList::add(std::function<void(EventSender*)> target) {
    forwarders.push_back(std::unique_ptr<Forwarder>(new Forwarder(*this, std::move(target))));
    return *forwarders.back();
}

void EventForwarderList::update() {
    UpdatedObject::update();
    // What a target triggers waits on the new list for the next update.
    const std::vector<Forwarder*> due = std::exchange(pendingForwarders, {});
    for (Forwarder* forwarder : due) {
        forwarder->pending = false;
        forwarder->target(forwarder->argument);
    }
}
