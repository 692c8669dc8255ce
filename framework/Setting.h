// One setting: a property with its name in the store, its standard value and, for numbers, its limits.
// Threads: main.
#pragma once

#include "base/NotifyEvent.h"
#include "base/Property.h"
#include "framework/SettingSerializer.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

template <typename T>
class Setting final : public Property<T>, public EventSender {
    static_assert(std::is_same_v<T, bool> || std::is_same_v<T, std::int32_t> || std::is_same_v<T, std::string>);

public:
    // The name is a literal.
    Setting(PropertyOwner* listener, std::string_view literal, T initial)
        : Setting(listener, literal, initial, {}, {}) {
        limited = false;
    }
    Setting(PropertyOwner* listener, std::string_view literal, T initial, T lowest, T highest)
        : Property<T>(listener, initial), name(literal), standard(initial), minimum(lowest), maximum(highest) {}

    void assign(T wanted) override; // clamps
    Setting& operator=(const T& wanted) {
        assign(wanted);
        return *this;
    }
    void serialize(SettingSerializer& serializer);

    NotifyEvent changed; // on each real change, also when it was read

private:
    const std::string_view name;
    const T standard;
    const T minimum;
    const T maximum;
    bool limited = true;
};

template <typename T>
void Setting<T>::assign(T wanted) {
    if (limited)
        wanted = wanted < minimum ? minimum : maximum < wanted ? maximum : wanted;
    const T before = this->get();
    Property<T>::assign(wanted);
    if (this->get() != before)
        changed.fire(this);
}

template <typename T>
void Setting<T>::serialize(SettingSerializer& serializer) {
    if constexpr (std::is_same_v<T, bool>) {
        assign(serializer.boolValue(name, this->get(), standard));
    } else if constexpr (std::is_same_v<T, std::int32_t>) {
        assign(serializer.intValue(name, this->get(), standard));
    } else {
        std::string text;
        serializer.stringValue(text, name, this->get(), standard);
        assign(text);
    }
}
