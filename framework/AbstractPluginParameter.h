// One parameter: a stored value, the text of values, a normalized view, and an owner that hears of every change. The
// stored value is what hosts and presets see, the unit value is its meaning (Hz, dB), the display value the step in
// between, which listeners get.
// Threads: as tagged. Values are single words that one thread writes and others read without a lock.
#pragma once

#include "base/Realtime.h"
#include "framework/ValueNames.h"

#include <cstdint>
#include <string>
#include <string_view>

class GenericParameterOwner;

class AbstractPluginParameter {
public:
    enum class Kind : std::uint8_t { continuous, stepped };

    AbstractPluginParameter(const AbstractPluginParameter&) = delete;
    AbstractPluginParameter& operator=(const AbstractPluginParameter&) = delete;
    virtual ~AbstractPluginParameter() = default;

    // Settings, for the owner while it builds itself.
    void setAutomatable(bool wanted) noexcept { automatable = wanted; }
    void setHint(std::string_view literal) noexcept { hintText = literal; } // must outlive the parameter

    // Conversions.
    virtual float valueFromUnit(double unit) const noexcept REALTIME = 0;
    virtual float valueFromDisplay(double display) const noexcept REALTIME = 0;
    virtual double unitFromValue(float value) const noexcept REALTIME = 0;
    virtual double displayFromValue(float value) const noexcept REALTIME = 0;
    virtual double normalize(float value) const noexcept REALTIME = 0;
    virtual float denormalize(double normalized) const noexcept REALTIME = 0; // clamps
    // As files of an older format version stored it, when the parameter had fewer values then.
    virtual double normalizeForVersion(float value, std::int32_t version) const noexcept = 0;
    [[nodiscard]] virtual bool denormalizeForVersion(double normalized, std::int32_t version,
                                                     float& value) const noexcept = 0;
    virtual std::int32_t limitForVersion(std::int32_t version) const noexcept = 0; // -1: none
    // How a value moves along when another parameter of its kind goes from one value to another; not clamped.
    float scaledValue(float value, float from, float to) const noexcept REALTIME;

    // Text. It allocates.
    [[nodiscard]] virtual bool parseText(std::string_view text, float& value) const = 0; // false: the current value
    virtual std::string shortText(float value, std::size_t maxLength) const = 0;         // maxLength 0: no limit
    virtual std::string text(float value) const = 0;

    // Values.
    virtual float defaultValue() const noexcept REALTIME = 0;
    virtual float maximum() const noexcept REALTIME = 0;
    virtual float minimum() const noexcept REALTIME = 0;
    virtual float value() const noexcept REALTIME = 0; // [any]
    // Clamps, stores, tells the owner; nothing happens when the value is the present one or not finite. As fit for the
    // audio thread as the owner's parameterChanged.
    virtual void setValue(float wanted, std::uint32_t flags) noexcept = 0; // [any]
    // For the owner: hands the value on to the listeners, without allocating.
    virtual void notifyListeners(float changed) noexcept = 0; // [audio on the audio side, else main]

    // Questions.
    virtual std::int32_t iconIndex() const noexcept { return 0; }
    bool hasValueNames() const noexcept { return !names.empty(); }
    bool hasNoValueNames() const noexcept { return names.empty(); }
    const ValueNames& valueNames() const noexcept { return names; }
    std::string longName() const; // "Band 7 Dynamic Range"
    // " Dynamic Range": the blank in front says that the name of the group belongs before it.
    std::string_view shortName() const noexcept { return name; }
    std::string_view groupName() const noexcept; // empty without a group
    std::string_view hint() const noexcept { return hintText; }
    std::int32_t id() const noexcept REALTIME { return ownId; } // -1 without owner
    GenericParameterOwner* owner() const noexcept { return parameterOwner; }
    Kind kind() const noexcept { return parameterKind; }
    bool isAutomatable() const noexcept { return automatable; }

protected:
    // Registers with the owner, which may be null. The name is a literal.
    AbstractPluginParameter(GenericParameterOwner* listener, Kind wanted, std::string_view literal);

    void setNames(const ValueNames& wanted) noexcept { names = wanted; }
    void tellOwner(float changed, std::uint32_t flags) const noexcept;

private:
    GenericParameterOwner* parameterOwner; // not owned
    std::string_view name;
    std::string_view hintText;
    ValueNames names;
    std::int32_t ownId = -1;
    Kind parameterKind;
    bool automatable = true;
};
