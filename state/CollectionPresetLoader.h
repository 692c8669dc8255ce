// Loads a preset of one collection of parameters, such as the interface defaults.
// Threads: main.
#pragma once

#include "state/PresetLoader.h"

#include <string>

class PresetParameterCollection;

class CollectionPresetLoader final : public PresetLoader {
public:
    CollectionPresetLoader(GenericPlugin& owner, const PresetParameterCollection& wanted);

protected:
    std::int32_t parameterCount() override;
    void beginLoad(std::int32_t version) override;
    void resetParameter(std::int32_t index) override;
    std::int32_t setParameterByName(std::string_view name, float value) override;
    void setParameter(std::int32_t index, float value) override;

private:
    const PresetParameterCollection& collection;
    std::string prefix; // what all names of the collection begin with and the text leaves out
};
