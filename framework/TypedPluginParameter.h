// What parameters of every value type share: the value as its own type, and the list of listeners for that type.
// Threads: the value is for any; the list changes on the main thread, and on the audio side only while it is built.
#pragma once

#include "base/Property.h"
#include "framework/AbstractPluginParameter.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <vector>

template <typename T>
class TypedPluginParameter : public AbstractPluginParameter {
public:
    void addListener(ValueAssignable<T>* listener) { // not owned; null is left out
        if (listener != nullptr)
            listeners.push_back(listener);
    }
    void removeListener(const ValueAssignable<T>* listener) {
        const auto found = std::find(listeners.begin(), listeners.end(), listener);
        if (found != listeners.end())
            listeners.erase(found);
    }

    T get() const noexcept REALTIME { return current.load(std::memory_order_relaxed); } // [any]

protected:
    using AbstractPluginParameter::AbstractPluginParameter;

    void store(T value) noexcept REALTIME { current.store(value, std::memory_order_relaxed); }
    void assignToListeners(T value) noexcept {
        for (std::size_t i = 0; i < listeners.size(); ++i) // by index: a listener may remove itself
            listeners[i]->assign(value);
    }

private:
    std::vector<ValueAssignable<T>*> listeners; // not owned
    std::atomic<T> current{};                   // relaxed: no other memory is published with it
};
