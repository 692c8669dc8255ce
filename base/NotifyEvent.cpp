#include "base/NotifyEvent.h"

#include <algorithm>

void NotifyEvent::setPrimary(std::unique_ptr<Handler> handler) {
    if (primary != nullptr)
        retire(primary);
    primary = std::move(handler);
}

void NotifyEvent::add(std::unique_ptr<Handler> handler) {
    handlers.push_back(std::move(handler));
}

void NotifyEvent::remove(const Handler& handler) {
    if (primary != nullptr && primary->equals(handler)) {
        retire(primary);
        return;
    }
    const auto found = std::find_if(handlers.begin(), handlers.end(),
                                    [&](const auto& own) { return own != nullptr && own->equals(handler); });
    if (found == handlers.end())
        return;
    retire(*found);
    if (firingDepth == 0)
        handlers.erase(found);
}

void NotifyEvent::fire(EventSender* sender) {
    struct Firing {
        explicit Firing(NotifyEvent& firedEvent) : event(firedEvent) { ++event.firingDepth; }
        ~Firing() {
            if (--event.firingDepth == 0)
                event.finishFiring();
        }
        NotifyEvent& event;
    } const firing(*this);

    if (primary != nullptr)
        primary->call(sender);
    for (std::size_t index = handlers.size(); index-- > 0;)
        if (handlers[index] != nullptr)
            handlers[index]->call(sender);
}

void NotifyEvent::retire(std::unique_ptr<Handler>& place) {
    if (firingDepth == 0)
        place.reset();
    else
        retired.push_back(std::move(place));
}

void NotifyEvent::finishFiring() {
    std::erase(handlers, nullptr);
    retired.clear();
}
