#include "framework/ParameterSetArray.h"

#include "base/NumberText.h"
#include "base/ReleaseAssert.h"
#include "framework/AbstractPluginParameter.h"

#include <utility>

void AbstractParameterSetArray::add(std::unique_ptr<PluginParameterSet> set) {
    release_assert(sets.empty() || set->parameterCount() == sets.front()->parameterCount());
    sets.push_back(std::move(set));
}

std::string AbstractParameterSetArray::numberedName(std::string_view name, std::int32_t number) {
    return std::string(name) + " " + wholeText(number);
}

void AbstractParameterSetArray::addParametersTo(ParameterCollection& collection) const {
    for (const auto& set : sets)
        set->addParametersTo(collection);
}

std::int32_t AbstractParameterSetArray::parametersPerSet() const noexcept {
    return sets.empty() ? 0 : sets.front()->parameterCount();
}

std::int32_t AbstractParameterSetArray::firstId() const noexcept {
    return parametersPerSet() > 0 ? sets.front()->parameter(0).id() : -1;
}

bool AbstractParameterSetArray::containsId(std::int32_t id) const noexcept {
    return parametersPerSet() > 0 && (id == -1 || setIndexForId(id) >= 0);
}

std::int32_t AbstractParameterSetArray::setIndexForId(std::int32_t id) const noexcept {
    const std::int32_t first = firstId();
    if (first < 0 || id < first)
        return -1;
    const std::int32_t index = (id - first) / parametersPerSet();
    return index < setCount() ? index : -1;
}

void AbstractParameterSetArray::resetToDefaults() const noexcept {
    if (sets.empty())
        return;
    sets.front()->beginChange();
    for (const auto& set : sets) {
        for (std::int32_t i = 0; i < set->parameterCount(); ++i)
            set->parameter(i).setValue(set->parameter(i).defaultValue(), 0);
    }
    sets.front()->endChange();
}

void AbstractParameterSetArray::init() {
    for (const auto& set : sets)
        set->init();
}
