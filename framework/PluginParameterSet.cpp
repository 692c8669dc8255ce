#include "framework/PluginParameterSet.h"

#include "framework/ParameterCollection.h"

#include <utility>

PluginParameterSet::PluginParameterSet(GenericParameterOwner& listener, std::string wanted, std::size_t expectedCount)
    : parent(&listener), ownName(std::move(wanted)), group(listener.registerGroup(ownName)) {
    parameters.reserve(expectedCount);
}

void PluginParameterSet::adoptObject(std::unique_ptr<AdoptedObject> object) {
    parent->adoptObject(std::move(object));
}

std::int32_t PluginParameterSet::registerParameter(AbstractPluginParameter& parameter) {
    parameters.push_back(&parameter);
    return parent->registerParameter(parameter);
}

void PluginParameterSet::registerAlias(AbstractPluginParameter& parameter, std::string_view alias) {
    parent->registerAlias(parameter, alias);
}

std::int32_t PluginParameterSet::registerGroup(std::string_view wanted) {
    return parent->registerGroup(wanted);
}

void PluginParameterSet::addParametersTo(ParameterCollection& collection) const {
    for (AbstractPluginParameter* parameter : parameters)
        collection.add(*parameter);
}
