#include "tools/host/StateFile.h"

#include "tools/host/Failure.h"
#include "tools/host/FilePath.h"
#include "tools/host/System.h"
#include "tools/host/WholeFile.h"

#include <algorithm>
#include <cstring>
#include <filesystem>

namespace {

const clap_plugin_state& stateTable(const PluginInstance& instance) {
    const auto* table = instance.extension<clap_plugin_state>(CLAP_EXT_STATE);
    if (table == nullptr)
        throw Failure("the plug-in has no state to save or load");
    return *table;
}

struct Source {
    std::string bytes;
    std::size_t position = 0;

    static std::int64_t read(const clap_istream* stream, void* buffer, std::uint64_t size) noexcept {
        Source& self = *static_cast<Source*>(stream->ctx);
        const std::size_t count = std::min<std::size_t>(size, self.bytes.size() - self.position);
        std::memcpy(buffer, self.bytes.data() + self.position, count);
        self.position += count;
        return static_cast<std::int64_t>(count);
    }
};

std::int64_t append(const clap_ostream* stream, const void* buffer, std::uint64_t size) noexcept {
    static_cast<std::string*>(stream->ctx)->append(static_cast<const char*>(buffer), size);
    return static_cast<std::int64_t>(size);
}

} // namespace

void loadState(PluginInstance& instance, const std::string& path) {
    Source source{wholeFile(path)};
    const clap_istream stream{&source, Source::read};
    if (!stateTable(instance).load(instance.clap(), &stream))
        throw Failure("the plug-in does not accept the state in " + path);
    instance.serve();
}

void saveState(const PluginInstance& instance, const std::string& path) {
    std::string bytes;
    const clap_ostream stream{&bytes, append};
    if (!stateTable(instance).save(instance.clap(), &stream))
        throw Failure("the plug-in could not save its state");
    OutputFile file(path);
    file.write(bytes);
    file.commit();
}

void loadPreset(PluginInstance& instance, const std::string& path) {
    const auto* table = instance.extension<clap_plugin_preset_load>(CLAP_EXT_PRESET_LOAD);
    if (table == nullptr)
        throw Failure("the plug-in loads no presets");
    const std::string absolute = pathText(std::filesystem::absolute(filePath(path)));
    instance.host().clearPresetError();
    if (!table->from_location(instance.clap(), CLAP_PRESET_DISCOVERY_LOCATION_FILE, absolute.c_str(), nullptr)) {
        const std::string& reason = instance.host().presetError();
        throw Failure("cannot load the preset " + path + (reason.empty() ? "" : ": " + reason));
    }
    instance.serve();
}
