#include "host/ClapPresetProvider.h"

#include "framework/RegistryReader.h"
#include "framework/SettingsKeys.h"
#include "framework/zelk/LegacyPresetLoader.h"
#include "framework/zelk/ZelkInit.h"
#include "host/ClapDescriptorBlock.h"
#include "host/ClapGuard.h"
#include "platform/Files.h"
#include "state/FavoritesFile.h"
#include "state/PresetMetadata.h"

#include <array>

namespace {

constexpr std::uint32_t flagsOfLocation =
    CLAP_PRESET_DISCOVERY_IS_FACTORY_CONTENT | CLAP_PRESET_DISCOVERY_IS_USER_CONTENT;
constexpr clap_preset_discovery_filetype fileType{"Tessivane Preset", "Preset for a Tessivane plugin", "tvp"};
constexpr std::int32_t customValuesFromVersion = 0; // binary presets of this product have none

} // namespace

ClapPresetProvider::ClapPresetProvider(const clap_preset_discovery_provider_descriptor& descriptor,
                                       const clap_preset_discovery_indexer& wanted)
    : indexer(wanted) {
    const ZelkInit product(info);
    table.desc = &descriptor;
    table.provider_data = this;
    table.init = [](const clap_preset_discovery_provider* self) noexcept {
        return clapGuard(false, [&] { return of(self).init(); });
    };
    table.destroy = [](const clap_preset_discovery_provider* self) noexcept { delete &of(self); };
    table.get_metadata = [](const clap_preset_discovery_provider* self, std::uint32_t kind, const char* location,
                            const clap_preset_discovery_metadata_receiver* receiver) noexcept {
        return kind == CLAP_PRESET_DISCOVERY_LOCATION_FILE && location != nullptr && receiver != nullptr &&
               clapGuard(false, [&] { return of(self).describe(location, *receiver); });
    };
    table.get_extension = [](const clap_preset_discovery_provider*, const char*) noexcept -> const void* {
        return nullptr;
    };
}

bool ClapPresetProvider::init() {
    const VersionInfo& product = info.version();
    RegistryReader(productSettingsKey(product))
        .stringValue(presetFolder, "PresetFolder", {}, standardPresetFolder(product));
    if (presetFolder.empty() || indexer.declare_location == nullptr)
        return false;
    const std::string name = product.productName() + " Preset Folder";
    const clap_preset_discovery_location location{flagsOfLocation, name.c_str(), CLAP_PRESET_DISCOVERY_LOCATION_FILE,
                                                  presetFolder.c_str()};
    if (!indexer.declare_location(&indexer, &location))
        return false;
    if (indexer.declare_filetype != nullptr)
        indexer.declare_filetype(&indexer, &fileType);
    favorites = readFavorites(presetFolder);
    return true;
}

bool ClapPresetProvider::describe(const char* location, const clap_preset_discovery_metadata_receiver& receiver) const {
    const std::array<std::string_view, 3> signatures{
        info.presetSignature, LegacyPresetLoader::signatureOf(LegacyPresetLoader::Layout::second),
        LegacyPresetLoader::signatureOf(LegacyPresetLoader::Layout::first)};
    Preset preset;
    preset.path = location;
    if (!fileExists(preset.path) || !readPresetMetadata(preset, signatures, customValuesFromVersion))
        return false;
    if (receiver.begin_preset == nullptr || !receiver.begin_preset(&receiver, preset.name.c_str(), location))
        return false;
    if (!preset.author.empty() && receiver.add_creator != nullptr)
        receiver.add_creator(&receiver, preset.author.c_str());
    if (!preset.description.empty() && receiver.set_description != nullptr)
        receiver.set_description(&receiver, preset.description.c_str());
    if (favorites.contains(preset.path) && receiver.set_flags != nullptr)
        receiver.set_flags(&receiver, flagsOfLocation | CLAP_PRESET_DISCOVERY_IS_FAVORITE);
    const ClapDescriptorBlock* const block = clapDescriptorBlock();
    if (block != nullptr && receiver.add_plugin_id != nullptr) {
        const clap_plugin_id plugin{"clap", block->plugin.id};
        receiver.add_plugin_id(&receiver, &plugin);
    }
    if (receiver.add_feature != nullptr)
        for (const std::string& tag : preset.tags)
            receiver.add_feature(&receiver, tag.c_str());
    return true;
}
