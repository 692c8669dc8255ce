// A stepped parameter: whole numbers, an enumeration or a switch. Hosts and presets see the index; the audio side and
// the listeners get the enumeration's own value, by a table where the two differ.
// Threads: as tagged in the base; the settings belong to construction.
#pragma once

#include "base/Realtime.h"
#include "base/ReleaseAssert.h"
#include "framework/IndexRange.h"
#include "framework/IndexedText.h"
#include "framework/TypedPluginParameter.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

template <typename T>
class IndexedPluginParameter : public TypedPluginParameter<T> {
public:
    IndexedPluginParameter(GenericParameterOwner* listener, std::string_view literal)
        : TypedPluginParameter<T>(listener, AbstractPluginParameter::Kind::stepped, literal) {}

    // Settings. The value becomes the standard, nobody is told.
    void setRange(std::int32_t lowest, std::int32_t highest, T standard);
    // One value for each index from 0 on; constant data that outlives the parameter. Comes before the range.
    void setMapping(std::span<const T> valueByIndex) noexcept { mapping = valueByIndex; }
    void setValueNames(const ValueNames& wanted) noexcept { this->setNames(wanted); }
    void setLimits(std::span<const IndexRange::Limit> ascending) noexcept { range.setLimits(ascending); }

    T typedFromIndex(std::int32_t index) const noexcept REALTIME;
    std::int32_t indexFromTyped(T typed) const noexcept REALTIME;
    std::int32_t index() const noexcept REALTIME { return indexFromTyped(this->get()); } // [any]

    float valueFromUnit(double unit) const noexcept REALTIME override { return static_cast<float>(unit); }
    float valueFromDisplay(double display) const noexcept REALTIME override;
    double unitFromValue(float value) const noexcept REALTIME override { return static_cast<double>(value); }
    double displayFromValue(float value) const noexcept REALTIME override;
    double normalize(float value) const noexcept REALTIME override { return range.normalize(value); }
    float denormalize(double normalized) const noexcept REALTIME override;
    double normalizeForVersion(float value, std::int32_t version) const noexcept override {
        return range.normalizeForVersion(value, version);
    }
    [[nodiscard]] bool denormalizeForVersion(double normalized, std::int32_t version,
                                             float& value) const noexcept override;
    std::int32_t limitForVersion(std::int32_t version) const noexcept override {
        return range.limitForVersion(version);
    }

    [[nodiscard]] bool parseText(std::string_view text, float& value) const override;
    std::string shortText(float value, std::size_t maxLength) const override;
    std::string text(float value) const override;

    float defaultValue() const noexcept REALTIME override { return static_cast<float>(indexFromTyped(standardValue)); }
    float maximum() const noexcept REALTIME override { return static_cast<float>(range.maximum()); }
    float minimum() const noexcept REALTIME override { return static_cast<float>(range.minimum()); }
    float value() const noexcept REALTIME override { return static_cast<float>(index()); }
    void setValue(float wanted, std::uint32_t flags) noexcept override;
    void notifyListeners(float changed) noexcept override;

private:
    IndexRange range;
    std::span<const T> mapping; // empty: the index is the value
    T standardValue{};
};

template <typename T>
void IndexedPluginParameter<T>::setRange(std::int32_t lowest, std::int32_t highest, T standard) {
    release_assert(lowest <= highest);
    range.setBounds(lowest, highest);
    release_assert(mapping.empty() || (lowest == 0 && mapping.size() == static_cast<std::size_t>(highest) + 1));
    release_assert(range.contains(indexFromTyped(standard)) && typedFromIndex(indexFromTyped(standard)) == standard);
    standardValue = standard;
    this->store(standard);
}

template <typename T>
T IndexedPluginParameter<T>::typedFromIndex(std::int32_t index) const noexcept REALTIME {
    return mapping.empty() ? static_cast<T>(index) : mapping[static_cast<std::size_t>(index)];
}

template <typename T>
std::int32_t IndexedPluginParameter<T>::indexFromTyped(T typed) const noexcept REALTIME {
    if (mapping.empty())
        return static_cast<std::int32_t>(typed);
    const auto found = std::find(mapping.begin(), mapping.end(), typed);
    return found != mapping.end() ? static_cast<std::int32_t>(found - mapping.begin()) : 0;
}

template <typename T>
float IndexedPluginParameter<T>::valueFromDisplay(double display) const noexcept REALTIME {
    if (mapping.empty())
        return static_cast<float>(display);
    for (std::size_t i = 0; i < mapping.size(); ++i) {
        if (static_cast<double>(mapping[i]) == display)
            return static_cast<float>(i);
    }
    return minimum();
}

template <typename T>
double IndexedPluginParameter<T>::displayFromValue(float value) const noexcept REALTIME {
    return static_cast<double>(static_cast<std::int32_t>(typedFromIndex(range.indexOf(value))));
}

template <typename T>
float IndexedPluginParameter<T>::denormalize(double normalized) const noexcept REALTIME {
    return static_cast<float>(range.denormalize(normalized));
}

template <typename T>
bool IndexedPluginParameter<T>::denormalizeForVersion(double normalized, std::int32_t version,
                                                      float& value) const noexcept {
    std::int32_t index = 0;
    const bool mine = range.denormalizeForVersion(normalized, version, index);
    value = static_cast<float>(index);
    return mine;
}

template <typename T>
bool IndexedPluginParameter<T>::parseText(std::string_view text, float& value) const {
    value = this->value();
    std::int64_t number = 0;
    switch (parseIndexedText(text, this->valueNames(), number)) {
    case IndexedTextKind::name:
        number += range.minimum();
        break;
    case IndexedTextKind::number:
        if (!mapping.empty()) {
            const auto found = std::find_if(mapping.begin(), mapping.end(),
                                            [number](T typed) { return static_cast<std::int64_t>(typed) == number; });
            if (found == mapping.end())
                return false;
            number = found - mapping.begin();
        }
        break;
    case IndexedTextKind::neither:
        return false;
    }
    if (!range.contains(number))
        return false;
    value = static_cast<float>(number);
    return true;
}

template <typename T>
std::string IndexedPluginParameter<T>::shortText(float value, std::size_t maxLength) const {
    return shortIndexedText(text(value), maxLength);
}

template <typename T>
std::string IndexedPluginParameter<T>::text(float value) const {
    const std::int32_t index = range.indexOf(value);
    return indexedText(index, index - range.minimum(), this->valueNames());
}

template <typename T>
void IndexedPluginParameter<T>::setValue(float wanted, std::uint32_t flags) noexcept {
    if (!std::isfinite(wanted))
        return;
    const std::int32_t changed = range.indexOf(wanted);
    if (changed == index())
        return;
    this->store(typedFromIndex(changed));
    this->tellOwner(static_cast<float>(changed), flags);
}

template <typename T>
void IndexedPluginParameter<T>::notifyListeners(float changed) noexcept {
    this->assignToListeners(typedFromIndex(range.indexOf(changed)));
}
