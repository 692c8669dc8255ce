#include "tools/host/PresetIndex.h"

#include "host/clap/Clap.h"
#include "tools/host/Failure.h"
#include "tools/host/FilePath.h"
#include "tools/host/TextTools.h"

#include <algorithm>
#include <filesystem>

namespace {

namespace fs = std::filesystem;

std::string textOf(const char* text) {
    return text != nullptr ? text : "";
}

bool declareFiletype(const clap_preset_discovery_indexer* self, const clap_preset_discovery_filetype* type) noexcept {
    static_cast<PresetIndex*>(self->indexer_data)->extensions.push_back(lowerCase(textOf(type->file_extension)));
    return true;
}

bool declareLocation(const clap_preset_discovery_indexer* self,
                     const clap_preset_discovery_location* location) noexcept {
    IndexedLocation found;
    found.name = textOf(location->name);
    found.path = textOf(location->location);
    found.kind = location->kind;
    found.flags = location->flags;
    static_cast<PresetIndex*>(self->indexer_data)->locations.push_back(std::move(found));
    return true;
}

clap_preset_discovery_indexer indexerInto(PresetIndex& index) {
    clap_preset_discovery_indexer indexer{};
    indexer.clap_version = CLAP_VERSION;
    indexer.name = "zelk-host";
    indexer.vendor = "Tessivane";
    indexer.version = ZELK_HOST_VERSION;
    indexer.indexer_data = &index;
    indexer.declare_filetype = declareFiletype;
    indexer.declare_location = declareLocation;
    indexer.declare_soundpack = [](const auto*, const auto*) noexcept { return true; };
    indexer.get_extension = [](const auto*, const char*) noexcept -> const void* { return nullptr; };
    return indexer;
}

// Collects what a provider tells of one file, which may hold several presets.
struct Receiver {
    PresetIndex& index;
    IndexedLocation& location;
    std::string path;

    IndexedPreset& present() { return location.presets.back(); }
    static Receiver& of(const clap_preset_discovery_metadata_receiver* self) {
        return *static_cast<Receiver*>(self->receiver_data);
    }
};

clap_preset_discovery_metadata_receiver tableOf(Receiver& receiver) {
    using Self = const clap_preset_discovery_metadata_receiver*;
    clap_preset_discovery_metadata_receiver table{};
    table.receiver_data = &receiver;
    table.on_error = [](Self self, std::int32_t, const char* message) noexcept {
        Receiver::of(self).index.errors.push_back(Receiver::of(self).path + ": " + textOf(message));
    };
    table.begin_preset = [](Self self, const char* name, const char* key) noexcept {
        Receiver& into = Receiver::of(self);
        IndexedPreset preset;
        preset.name = textOf(name);
        preset.path = into.path;
        preset.loadKey = textOf(key);
        preset.flags = into.location.flags;
        into.location.presets.push_back(std::move(preset));
        return true;
    };
    table.add_plugin_id = [](Self self, const clap_plugin_id* plugin) noexcept {
        Receiver::of(self).present().plugins.push_back(textOf(plugin->id));
    };
    table.set_soundpack_id = [](Self, const char*) noexcept {};
    table.set_flags = [](Self self, std::uint32_t flags) noexcept { Receiver::of(self).present().flags = flags; };
    table.add_creator = [](Self self, const char* creator) noexcept {
        Receiver::of(self).present().creators.push_back(textOf(creator));
    };
    table.set_description = [](Self self, const char* text) noexcept {
        Receiver::of(self).present().description = textOf(text);
    };
    table.set_timestamps = [](Self, clap_timestamp_t, clap_timestamp_t) noexcept {};
    table.add_feature = [](Self self, const char* feature) noexcept {
        Receiver::of(self).present().features.push_back(textOf(feature));
    };
    table.add_extra_info = [](Self, const char*, const char*) noexcept {};
    return table;
}

bool fits(const fs::path& file, const std::vector<std::string>& extensions) {
    std::string extension = lowerCase(pathText(file.extension()));
    if (!extension.empty())
        extension.erase(0, 1);
    return std::any_of(extensions.begin(), extensions.end(),
                       [&](const std::string& wanted) { return wanted.empty() || wanted == extension; });
}

std::vector<std::string> filesOf(const IndexedLocation& location, const std::vector<std::string>& extensions) {
    std::vector<std::string> files;
    std::error_code error;
    if (fs::is_regular_file(filePath(location.path), error))
        files.push_back(location.path);
    const auto options = fs::directory_options::skip_permission_denied;
    for (auto at = fs::recursive_directory_iterator(filePath(location.path), options, error);
         !error && at != fs::recursive_directory_iterator(); at.increment(error))
        if (at->is_regular_file(error) && fits(at->path(), extensions))
            files.push_back(pathText(at->path()));
    std::sort(files.begin(), files.end());
    return files;
}

void askProvider(const clap_preset_discovery_provider& provider, PresetIndex& index, std::size_t firstLocation) {
    for (std::size_t i = firstLocation; i < index.locations.size(); ++i) {
        IndexedLocation& location = index.locations[i];
        Receiver receiver{index, location, {}};
        const clap_preset_discovery_metadata_receiver table = tableOf(receiver);
        if (location.kind != CLAP_PRESET_DISCOVERY_LOCATION_FILE) {
            provider.get_metadata(&provider, location.kind, nullptr, &table);
            continue;
        }
        for (const std::string& file : filesOf(location, index.extensions)) {
            receiver.path = file;
            if (!provider.get_metadata(&provider, location.kind, file.c_str(), &table))
                ++index.refusedFiles;
        }
    }
}

} // namespace

PresetIndex indexPresets(const PluginLibrary& library) {
    const auto* const factory =
        static_cast<const clap_preset_discovery_factory*>(library.otherFactory(CLAP_PRESET_DISCOVERY_FACTORY_ID));
    if (factory == nullptr)
        throw Failure("the plug-in file tells of no presets");
    PresetIndex index;
    const clap_preset_discovery_indexer indexer = indexerInto(index);
    for (std::uint32_t i = 0; i < factory->count(factory); ++i) {
        const auto* const descriptor = factory->get_descriptor(factory, i);
        const clap_preset_discovery_provider* const provider =
            descriptor != nullptr ? factory->create(factory, &indexer, descriptor->id) : nullptr;
        if (provider == nullptr) {
            index.errors.push_back("provider " + std::to_string(i) + " cannot be made");
            continue;
        }
        const std::size_t firstLocation = index.locations.size();
        if (provider->init(provider))
            askProvider(*provider, index, firstLocation);
        else
            index.errors.push_back(textOf(descriptor->name) + " cannot begin");
        provider->destroy(provider);
    }
    return index;
}

std::string findPreset(const PluginLibrary& library, const std::string& nameOrPath) {
    std::error_code error;
    if (fs::exists(filePath(nameOrPath), error))
        return nameOrPath;
    std::vector<std::string> names;
    for (const IndexedLocation& location : indexPresets(library).locations) {
        for (const IndexedPreset& preset : location.presets) {
            if (sameWord(preset.name, nameOrPath))
                return preset.path;
            names.push_back(preset.name);
        }
    }
    throw Failure("there is no preset \"" + nameOrPath + "\"" + suggestion(nameOrPath, names));
}
