#include "state/SharedPresets.h"

#include "framework/PluginInstances.h"
#include "platform/Folders.h"

#include <utility>

SharedPresets& SharedPresets::ofProcess() noexcept {
    return *PluginInstances::ofProcess().shared<SharedPresets>();
}

SharedPresets::SharedPresets(std::string_view presetExtension) : mainManager({}, presetExtension) {}

void SharedPresets::openCache(const std::string& file, PresetCache::Source source) {
    ownCache = std::make_unique<PresetCache>(file, std::move(source));
    ownCache->load();
    mainManager.setListener(ownCache.get());
}

std::int32_t SharedPresets::addComponent(const std::string& folder, std::string_view extension) {
    static_cast<void>(createDirectories(folder)); // without it the list stays empty
    components.push_back(std::make_unique<PresetManager>(folder, extension));
    return componentCount() - 1;
}

PresetManager& SharedPresets::manager(std::int32_t index) noexcept {
    return index >= 0 && index < componentCount() ? *components[static_cast<std::size_t>(index)] : mainManager;
}
