#include "framework/GenericPluginBase.h"

#include "base/ReleaseAssert.h"

#include <utility>

GenericPluginBase::GenericPluginBase() : collection(std::make_unique<ParameterCollection>(this)) {}

GenericPluginBase::GenericPluginBase(std::unique_ptr<ParameterCollection> allParameters)
    : collection(std::move(allParameters)) {
    release_assert(collection != nullptr);
}

void GenericPluginBase::beginChange() noexcept {
    brackets.fetch_add(bracketBegun + 1);
}

void GenericPluginBase::endChange() noexcept {
    leaveChange();
}

std::int32_t GenericPluginBase::registerParameter(AbstractPluginParameter& parameter) {
    return collection->add(parameter);
}

void GenericPluginBase::registerAlias(AbstractPluginParameter&, std::string_view) {}

std::int32_t GenericPluginBase::registerGroup(std::string_view) {
    return 0;
}

std::int32_t GenericPluginBase::changeDepth() const noexcept REALTIME {
    return static_cast<std::int32_t>(bracketState() & openBrackets);
}

std::int32_t GenericPluginBase::leaveChange() noexcept {
    // One end too many must not hold changes back for ever, nor let the next bracket act half open.
    std::uint32_t state = brackets.load(std::memory_order_relaxed);
    while ((state & openBrackets) != 0 && !brackets.compare_exchange_weak(state, state - 1)) {
    }
    const auto open = static_cast<std::int32_t>(state & openBrackets);
    return open > 0 ? open - 1 : 0;
}
