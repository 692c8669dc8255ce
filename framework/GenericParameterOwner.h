// Whatever owns parameters: hands out their ids, hears of every change, brackets changes that belong together.
// Threads: as tagged; building happens on the main thread.
#pragma once

#include "base/Realtime.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

class AbstractPluginParameter;

// A helper that lives as long as the owner of the parameters it works for, such as a listener with code of its own.
class AdoptedObject {
public:
    virtual ~AdoptedObject() = default;
};

class GenericParameterOwner {
public:
    // Bits of the flags of a change.
    static constexpr std::uint32_t silent = 1; // the other side and the host know already
    static constexpr std::uint32_t unheard =
        2; // only store: who sets the value settles the rest, the owner is not told

    virtual void beginChange() noexcept = 0;                             // [any] brackets nest
    virtual void adoptObject(std::unique_ptr<AdoptedObject> object) = 0; // [main]
    virtual void endChange() noexcept = 0;                               // [any]
    virtual std::int32_t parameterCount() const noexcept REALTIME = 0;   // [any]
    virtual AbstractPluginParameter&
    parameter(std::int32_t index) const noexcept REALTIME = 0; // [any] index below the count
    virtual std::int32_t groupIndex() const noexcept = 0;      // [any] 0: parameters of the plug-in itself
    virtual std::string_view groupName() const noexcept = 0;   // [any] empty in group 0

    // Called after the value is stored, on the thread that stored it.
    virtual void parameterChanged(std::int32_t id, float value, std::uint32_t flags) noexcept = 0; // [any]

    virtual std::int32_t registerParameter(AbstractPluginParameter& parameter) = 0;            // [main] its id
    virtual void registerAlias(AbstractPluginParameter& parameter, std::string_view name) = 0; // [main]
    virtual std::int32_t registerGroup(std::string_view name) = 0;                             // [main] its index

protected:
    ~GenericParameterOwner() = default;
};
