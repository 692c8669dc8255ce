// Loads presets of a product, older versions through the version maps.
// Threads: main.
#pragma once

#include "state/PresetLoader.h"

#include <cstdint>
#include <vector>

class AbstractPluginParameter;
class PresetParameterCollection;

class CustomPresetLoader : public PresetLoader {
public:
    // Where one stored value goes.
    struct Target {
        AbstractPluginParameter* parameter = nullptr; // null: nowhere
        float* local = nullptr;                       // a value of the loader's own, null: none
        float last = 0.0f;
    };

    // version -1: what comes is taken as it is.
    CustomPresetLoader(GenericPlugin& owner, const PresetParameterCollection& main, std::int32_t version);

protected:
    std::int32_t parameterCount() override { return static_cast<std::int32_t>(targets.size()); }
    void beginLoad(std::int32_t version) override;
    bool acceptsVersion(std::int32_t version) override;
    void resetParameter(std::int32_t index) override;
    std::int32_t setParameterByName(std::string_view name, float value) override;
    void setParameter(std::int32_t index, float value) override;

    std::vector<Target> targets;

private:
    void targetAll();
    bool prepare(std::int32_t version);

    const PresetParameterCollection& collection;
    const std::int32_t currentVersion;
    std::int32_t preparedVersion = -1;
    std::vector<std::uint32_t> newParameters; // of the prepared version
};
