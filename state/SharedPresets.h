// The trees of presets that all instances of the process share.
// Threads: main, under processSection while they are made and destroyed.
#pragma once

#include "framework/GenericParameterOwner.h"
#include "state/PresetCache.h"
#include "state/PresetManager.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class SharedPresets final : public AdoptedObject {
public:
    static SharedPresets& ofProcess() noexcept; // an instance exists

    explicit SharedPresets(std::string_view presetExtension);

    // With the capability for it, before the trees are scanned.
    void openCache(const std::string& file, PresetCache::Source source);
    PresetCache* cache() noexcept { return ownCache.get(); } // null: the product has none

    // Makes the folder. The result is the component's index.
    std::int32_t addComponent(const std::string& folder, std::string_view extension);

    PresetManager& manager(std::int32_t index) noexcept; // that of a component, or the main one for any other index
    std::int32_t componentCount() const noexcept { return static_cast<std::int32_t>(components.size()); }

private:
    std::unique_ptr<PresetCache> ownCache;
    PresetManager mainManager; // empty until its folder is known
    std::vector<std::unique_ptr<PresetManager>> components;
};
