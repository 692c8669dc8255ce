#include "state/CustomPresetLoader.h"

#include "framework/AbstractPluginParameter.h"
#include "state/PresetParameterCollection.h"
#include "state/PresetVersionMap.h"
#include "state/StoredValue.h"

#include <cmath>

CustomPresetLoader::CustomPresetLoader(GenericPlugin& owner, const PresetParameterCollection& main,
                                       std::int32_t version)
    : PresetLoader(owner, main.signature()), collection(main), currentVersion(version) {
    if (currentVersion == -1)
        targetAll();
}

void CustomPresetLoader::targetAll() {
    targets.clear();
    newParameters.clear();
    for (std::int32_t i = 0; i < collection.count(); ++i)
        targets.push_back({&collection.at(i), nullptr, 0.0f});
}

bool CustomPresetLoader::acceptsVersion(std::int32_t version) {
    if (currentVersion == -1)
        return true;
    if (isTextForm())
        return version == currentVersion;
    if (version == preparedVersion)
        return true;
    if (version < 1 || version > currentVersion || !prepare(version))
        return false;
    preparedVersion = version;
    return true;
}

bool CustomPresetLoader::prepare(std::int32_t version) {
    preparedVersion = -1;
    if (version == currentVersion) {
        targetAll();
        return true;
    }
    PresetVersionMap map;
    if (!map.load(collection.signature(), version) || map.parameterCount() != collection.count())
        return false;
    targets.clear();
    for (const std::uint32_t index : map.newIndices()) {
        Target target;
        if (!PresetVersionMap::isDropped(index))
            target.parameter = &collection.at(static_cast<std::int32_t>(index));
        targets.push_back(target);
    }
    newParameters = map.newParameters();
    return true;
}

void CustomPresetLoader::beginLoad(std::int32_t) {
    if (isTextForm()) {
        targetAll();
        preparedVersion = currentVersion;
        return;
    }
    for (const std::uint32_t index : newParameters) {
        AbstractPluginParameter& parameter = collection.at(static_cast<std::int32_t>(index));
        parameter.setValue(parameter.defaultValue(), 0);
    }
}

void CustomPresetLoader::resetParameter(std::int32_t index) {
    if (AbstractPluginParameter* const parameter = targets[static_cast<std::size_t>(index)].parameter)
        parameter->setValue(parameter->defaultValue(), 0);
}

std::int32_t CustomPresetLoader::setParameterByName(std::string_view name, float value) {
    const std::int32_t index = collection.indexOf(name);
    if (index < 0)
        reportUnknownParameter(name);
    else
        setParameter(index, value);
    return index;
}

void CustomPresetLoader::setParameter(std::int32_t index, float value) {
    Target& target = targets[static_cast<std::size_t>(index)];
    if (target.parameter != nullptr)
        setStoredValue(*target.parameter, value, 0);
    if (target.local != nullptr && std::isfinite(value))
        *target.local = value;
    target.last = value;
}
