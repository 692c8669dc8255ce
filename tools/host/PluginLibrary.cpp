#include "tools/host/PluginLibrary.h"

#include "tools/host/Failure.h"
#include "tools/host/FilePath.h"
#include "tools/host/TextTools.h"

#include <filesystem>

namespace {

std::string usablePath(const std::string& path) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(filePath(path), error);
    if (status.type() == std::filesystem::file_type::not_found)
        throw Failure("there is no file " + path);
    if (status.type() == std::filesystem::file_type::directory)
        throw Failure(path + " is a folder, not a plug-in file");
    return pathText(std::filesystem::absolute(filePath(path)));
}

} // namespace

PluginLibrary::PluginLibrary(const std::string& path) : file(usablePath(path)), module(file) {
    entry = static_cast<const clap_plugin_entry*>(module.symbol("clap_entry"));
    if (entry == nullptr)
        throw Failure(path + " is no CLAP plug-in: it exports no \"clap_entry\"");
    if (entry->clap_version.major < 1)
        throw Failure(path + " was built for CLAP " + std::to_string(entry->clap_version.major) + ", which is too old");
    if (!entry->init(file.c_str()))
        throw Failure(path + " refused to start (its entry's init gave false)");
    plugins = static_cast<const clap_plugin_factory*>(entry->get_factory(CLAP_PLUGIN_FACTORY_ID));
    const std::uint32_t count = plugins == nullptr ? 0 : plugins->get_plugin_count(plugins);
    for (std::uint32_t i = 0; i < count; ++i) {
        const clap_plugin_descriptor* found = plugins->get_plugin_descriptor(plugins, i);
        if (found != nullptr && found->id != nullptr && found->name != nullptr)
            listed.push_back(found);
    }
    if (listed.empty()) {
        entry->deinit();
        throw Failure(path + " holds no plug-in");
    }
}

PluginLibrary::~PluginLibrary() {
    entry->deinit();
}

const clap_plugin_descriptor& PluginLibrary::descriptor(const std::string& id) const {
    if (id.empty())
        return *listed.front();
    std::vector<std::string> ids;
    for (const clap_plugin_descriptor* found : listed) {
        if (id == found->id)
            return *found;
        ids.emplace_back(found->id);
    }
    throw Failure(file + " holds no plug-in \"" + id + "\"" + suggestion(id, ids));
}
