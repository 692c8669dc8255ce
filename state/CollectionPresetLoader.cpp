#include "state/CollectionPresetLoader.h"

#include "framework/AbstractPluginParameter.h"
#include "state/PresetParameterCollection.h"
#include "state/StoredValue.h"

CollectionPresetLoader::CollectionPresetLoader(GenericPlugin& owner, const PresetParameterCollection& wanted)
    : PresetLoader(owner, wanted.signature()), collection(wanted) {
    hasCustomValues = wanted.isWholeList();
}

std::int32_t CollectionPresetLoader::parameterCount() {
    return collection.count();
}

void CollectionPresetLoader::beginLoad(std::int32_t) {
    if (isTextForm())
        prefix = collection.namePrefix();
}

void CollectionPresetLoader::resetParameter(std::int32_t index) {
    AbstractPluginParameter& parameter = collection.at(index);
    parameter.setValue(parameter.defaultValue(), 0);
}

std::int32_t CollectionPresetLoader::setParameterByName(std::string_view name, float value) {
    const std::int32_t index = collection.indexOfCutName(name, prefix);
    if (index < 0)
        reportUnknownParameter(name);
    else
        setParameter(index, value);
    return index;
}

void CollectionPresetLoader::setParameter(std::int32_t index, float value) {
    setStoredValue(collection.at(index), value, 0);
}
