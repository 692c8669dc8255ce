// An event with several listeners, called in a fixed order.
// Threads: that of the object which owns the event.
#pragma once

#include <cstddef>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

// What can stand as the sender of an event. A listener that knows its sender casts it to the class it knows.
class EventSender {
protected:
    EventSender() = default;
    ~EventSender() = default;
};

class NotifyEvent {
public:
    class Handler {
    public:
        virtual ~Handler() = default;
        virtual void call(EventSender* sender) = 0;
        virtual bool equals(const Handler& other) const = 0; // the same object and member function
    };

    template <typename T>
    class HandlerImpl;
    template <typename T>
    class HandlerImpl0;
    template <typename F>
    class HandlerImplFunc;

    NotifyEvent() = default;
    NotifyEvent(const NotifyEvent&) = delete;
    NotifyEvent& operator=(const NotifyEvent&) = delete;

    // The owner's own reaction. It runs before all others.
    void setPrimary(std::unique_ptr<Handler> handler);

    void add(std::unique_ptr<Handler> handler);
    template <typename T>
    void add(T* object, void (T::*member)(EventSender*));
    template <typename T>
    void add(T* object, void (T::*member)());

    // Destroys the first handler that equals this one; none: nothing happens. A handler may remove itself or others
    // while the event fires; a removed one is not called any more.
    void remove(const Handler& handler);
    template <typename T>
    void remove(T* object, void (T::*member)(EventSender*));
    template <typename T>
    void remove(T* object, void (T::*member)());

    // Calls the primary handler, then the others from the last added to the first. Those added meanwhile wait for the
    // next firing.
    void fire(EventSender* sender);

private:
    void retire(std::unique_ptr<Handler>& place);
    void finishFiring();

    std::unique_ptr<Handler> primary;
    std::vector<std::unique_ptr<Handler>> handlers;
    std::vector<std::unique_ptr<Handler>> retired; // removed during a firing, so perhaps still running
    int firingDepth = 0;
};

template <typename T>
class NotifyEvent::HandlerImpl final : public NotifyEvent::Handler {
public:
    using Member = void (T::*)(EventSender*);
    HandlerImpl(T* target, Member function) : object(target), member(function) {}
    void call(EventSender* sender) override { (object->*member)(sender); }
    bool equals(const Handler& other) const override {
        const auto* same = dynamic_cast<const HandlerImpl*>(&other);
        return same != nullptr && same->object == object && same->member == member;
    }

private:
    T* object;
    Member member;
};

template <typename T>
class NotifyEvent::HandlerImpl0 final : public NotifyEvent::Handler {
public:
    using Member = void (T::*)();
    HandlerImpl0(T* target, Member function) : object(target), member(function) {}
    void call(EventSender*) override { (object->*member)(); }
    bool equals(const Handler& other) const override {
        const auto* same = dynamic_cast<const HandlerImpl0*>(&other);
        return same != nullptr && same->object == object && same->member == member;
    }

private:
    T* object;
    Member member;
};

// A function object has no identity but the handler's own.
template <typename F>
class NotifyEvent::HandlerImplFunc final : public NotifyEvent::Handler {
public:
    explicit HandlerImplFunc(F wanted) : function(std::move(wanted)) {}
    void call(EventSender* sender) override {
        if constexpr (std::is_invocable_v<F&, EventSender*>)
            function(sender);
        else
            function();
    }
    bool equals(const Handler& other) const override { return this == &other; }

private:
    F function;
};

template <typename T>
void NotifyEvent::add(T* object, void (T::*member)(EventSender*)) {
    add(std::make_unique<HandlerImpl<T>>(object, member));
}

template <typename T>
void NotifyEvent::add(T* object, void (T::*member)()) {
    add(std::make_unique<HandlerImpl0<T>>(object, member));
}

template <typename T>
void NotifyEvent::remove(T* object, void (T::*member)(EventSender*)) {
    remove(HandlerImpl<T>(object, member));
}

template <typename T>
void NotifyEvent::remove(T* object, void (T::*member)()) {
    remove(HandlerImpl0<T>(object, member));
}
