#include "framework/ParameterCollection.h"

std::int32_t ParameterCollection::add(AbstractPluginParameter& parameter) {
    parameters.push_back(&parameter);
    return count() - 1;
}

void ParameterCollection::reserve(std::int32_t expected) {
    if (expected > 0)
        parameters.reserve(static_cast<std::size_t>(expected));
}
