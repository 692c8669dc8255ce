#include "host/ClapPortConfigs.h"

#include "framework/chl/Layouts.h"
#include "host/ClapGuard.h"
#include "host/ClapPluginAdapter.h"
#include "host/ClapPorts.h"
#include "host/ClapText.h"

namespace {

constexpr auto layoutLimit = static_cast<std::uint32_t>(chl::layoutCount);

// All layouts, without mono all but one, without more than two channels mono and stereo, else one.
std::uint32_t configCount(const clap_plugin* plugin) noexcept {
    const GenericPluginInfo& info = ClapPluginAdapter::of(plugin).editorSide().info;
    const bool mono = info.has(GenericPluginInfo::mono);
    if (info.has(GenericPluginInfo::multichannel))
        return mono ? layoutLimit : layoutLimit - 1;
    return mono ? 2 : 1;
}

bool getConfig(const clap_plugin* plugin, std::uint32_t index, clap_audio_ports_config* config) noexcept {
    if (config == nullptr || index >= layoutLimit)
        return false;
    const auto layout = static_cast<int>(index);
    *config = {};
    config->id = index;
    copyClapText(chl::layoutName(static_cast<chl::Layout>(layout)), config->name);
    config->input_port_count = static_cast<std::uint32_t>(ClapPluginAdapter::of(plugin).inputPorts().size());
    config->output_port_count = 1;
    config->has_main_input = true;
    config->main_input_channel_count = clapChannelCount(layout);
    config->main_input_port_type = clapPortType(layout);
    config->has_main_output = true;
    config->main_output_channel_count = clapChannelCount(layout);
    config->main_output_port_type = clapPortType(layout);
    return true;
}

bool selectConfig(const clap_plugin* plugin, clap_id id) noexcept {
    return id < layoutLimit &&
           clapGuard(false, [&] { return ClapPluginAdapter::of(plugin).selectLayout(static_cast<int>(id)); });
}

} // namespace

const clap_plugin_audio_ports_config clapPortConfigs{configCount, getConfig, selectConfig};
