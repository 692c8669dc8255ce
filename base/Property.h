// Values that tell their owner when they change.
// Threads: that of the object which owns them.
#pragma once

#include <concepts>
#include <functional>
#include <type_traits>
#include <utility>

// Something that takes a value, for code that must write one without knowing where it lives.
template <typename T>
class ValueAssignable {
public:
    virtual ~ValueAssignable() = default;
    virtual void assign(T value) = 0;
};

class AbstractProperty;

// Reacts to its properties. Tells them apart by comparing the address of the reference with those of its members.
class PropertyOwner {
public:
    virtual void propertyChanged(AbstractProperty&) {}

protected:
    ~PropertyOwner() = default;
};

class AbstractProperty {
public:
    explicit AbstractProperty(PropertyOwner* listener) noexcept : owner(listener) {}
    AbstractProperty(const AbstractProperty&) = delete;
    AbstractProperty& operator=(const AbstractProperty&) = delete;

protected:
    ~AbstractProperty() = default;

    void notifyOwner() {
        if (owner != nullptr)
            owner->propertyChanged(*this);
    }

private:
    PropertyOwner* owner; // not owned; null: nobody hears of changes
};

// Owner and value. Only the owner's own code changes it.
template <typename T>
class OwnedProperty : public AbstractProperty {
public:
    explicit OwnedProperty(PropertyOwner* listener, T initial = T{}) : AbstractProperty(listener), value(initial) {}

    const T& get() const noexcept { return value; }
    operator const T&() const noexcept { return value; }

    // Stores and notifies, unless the value is the present one. A not-a-number never differs from a float.
    void change(const T& wanted) {
        if (!differs(wanted))
            return;
        value = wanted;
        notifyOwner();
    }

protected:
    ~OwnedProperty() = default;

private:
    bool differs(const T& wanted) const {
        if constexpr (std::is_floating_point_v<T>)
            return wanted < value || wanted > value;
        else
            return !(wanted == value);
    }

    T value;
};

// A property that outside code assigns.
template <typename T>
class Property : public ValueAssignable<T>, public OwnedProperty<T> {
public:
    using OwnedProperty<T>::OwnedProperty;

    void assign(T wanted) override { this->change(wanted); }

    Property& operator=(const T& wanted) {
        assign(wanted);
        return *this;
    }
};

// Clamps what it is given. A not-a-number passes the clamp and is then no change.
template <typename T>
class LimitedProperty final : public Property<T> {
public:
    LimitedProperty(PropertyOwner* listener, T lowest, T highest, T initial)
        : Property<T>(listener, initial), maximum(highest), minimum(lowest) {}

    void assign(T wanted) override {
        if (wanted < minimum)
            wanted = minimum;
        else if (wanted > maximum)
            wanted = maximum;
        Property<T>::assign(wanted);
    }

    LimitedProperty& operator=(const T& wanted) {
        assign(wanted);
        return *this;
    }

private:
    using OwnedProperty<T>::change; // knows no limits

    T maximum;
    T minimum;
};

// A property without a value of its own, such as the centre of something that has a position and a size.
template <typename T>
class DelegatingProperty final : public ValueAssignable<T> {
public:
    DelegatingProperty(std::function<T()> read, std::function<void(T)> write)
        : getter(std::move(read)), setter(std::move(write)) {}

    T get() const { return getter(); }
    operator T() const { return getter(); }
    void assign(T wanted) override { setter(wanted); }

private:
    std::function<T()> getter;
    std::function<void(T)> setter;
};
