#include "base/NotifyEvent.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

namespace {

struct Bell : EventSender {};

struct Listener {
    Listener(std::string& sharedLog, char letter) : log(sharedLog), name(letter) {}
    void heard(EventSender* from) {
        log += name;
        sender = from;
    }
    void heardNothing() { log += name; }
    void heardAndLeaves() {
        log += name;
        event->remove(this, &Listener::heardAndLeaves);
        if (victim != nullptr)
            event->remove(victim, &Listener::heardNothing);
    }

    std::string& log;
    char name;
    EventSender* sender = nullptr;
    NotifyEvent* event = nullptr;
    Listener* victim = nullptr;
};

TEST(NotifyEvent, CallsThePrimaryFirstThenFromTheLastAddedToTheFirst) {
    std::string log;
    Bell bell;
    NotifyEvent event;
    Listener b(log, 'B');
    Listener c(log, 'C');
    event.add(&b, &Listener::heard);
    event.add(&c, &Listener::heardNothing);
    const auto primary = [&] { log += 'A'; };
    event.setPrimary(std::make_unique<NotifyEvent::HandlerImplFunc<decltype(primary)>>(primary));
    event.fire(&bell);
    EXPECT_EQ(log, "ACB");
    EXPECT_EQ(b.sender, &bell);
    log.clear();
    event.remove(&c, &Listener::heard); // another member function: not this handler
    event.remove(&b, &Listener::heard);
    event.fire(&bell);
    EXPECT_EQ(log, "AC");
}

TEST(NotifyEvent, AHandlerMayRemoveItselfAndOthersAndAddWhileTheEventFires) {
    std::string log;
    NotifyEvent event;
    Listener first(log, '1');
    Listener victim(log, 'V');
    Listener leaver(log, 'L');
    leaver.event = &event;
    leaver.victim = &victim;
    event.add(&first, &Listener::heardNothing);
    event.add(&victim, &Listener::heardNothing);
    event.add(&leaver, &Listener::heardAndLeaves);
    auto adder = [&, added = false]() mutable {
        if (!std::exchange(added, true))
            event.add(&leaver, &Listener::heardNothing);
    };
    event.add(std::make_unique<NotifyEvent::HandlerImplFunc<decltype(adder)>>(adder));
    event.fire(nullptr);
    EXPECT_EQ(log, "L1") << "neither the removed nor the added one is called in this firing";
    log.clear();
    event.fire(nullptr);
    EXPECT_EQ(log, "L1") << "the added one now, the leaver's old handler no more";
}

TEST(NotifyEvent, DestroysEachHandlerOnceEvenWhenItIsRemovedInsideItsOwnCall) {
    const auto alive = std::make_shared<int>(0);
    {
        NotifyEvent event;
        NotifyEvent::Handler* own = nullptr;
        const auto leave = [&event, &own, kept = alive] {
            event.remove(*own);
            EXPECT_EQ(kept.use_count(), 3) << "still there while it runs: the test's, the original's and its own";
            event.fire(nullptr); // nested: it is not called again
        };
        auto handler = std::make_unique<NotifyEvent::HandlerImplFunc<decltype(leave)>>(leave);
        own = handler.get();
        event.add(std::move(handler));
        event.fire(nullptr);
        EXPECT_EQ(alive.use_count(), 2);
    }
    EXPECT_EQ(alive.use_count(), 1);
}

} // namespace
