#include "framework/AbstractPluginParameter.h"

#include "base/FloatTolerance.h"
#include "framework/GenericParameterOwner.h"

#include <cmath>

AbstractPluginParameter::AbstractPluginParameter(GenericParameterOwner* listener, Kind wanted, std::string_view literal)
    : parameterOwner(listener), name(literal), parameterKind(wanted) {
    if (parameterOwner != nullptr)
        ownId = parameterOwner->registerParameter(*this);
}

float AbstractPluginParameter::scaledValue(float value, float from, float to) const noexcept REALTIME {
    const double start = unitFromValue(from);
    if (std::fabs(start) <= static_cast<double>(floatTolerance)) // no ratio leads away from nothing
        return to - from + value;
    return valueFromUnit(unitFromValue(value) * unitFromValue(to) / start);
}

std::string AbstractPluginParameter::longName() const {
    if (name.empty() || name.front() != ' ')
        return std::string(name);
    const std::string_view group = groupName();
    return group.empty() ? std::string(name.substr(1)) : std::string(group).append(name);
}

std::string_view AbstractPluginParameter::groupName() const noexcept {
    return parameterOwner != nullptr ? parameterOwner->groupName() : std::string_view{};
}

void AbstractPluginParameter::tellOwner(float changed, std::uint32_t flags) const noexcept {
    if (parameterOwner != nullptr && (flags & GenericParameterOwner::unheard) == 0)
        parameterOwner->parameterChanged(ownId, changed, flags);
}
