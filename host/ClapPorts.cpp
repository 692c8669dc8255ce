#include "host/ClapPorts.h"

#include "framework/GenericPlugin.h"
#include "framework/chl/Layouts.h"
#include "host/ClapPluginAdapter.h"
#include "host/ClapText.h"

namespace {

clap_audio_port_info port(const GenericPlugin& plugin, clap_id id, const char* name, std::uint32_t flags) {
    clap_audio_port_info info{};
    info.id = id;
    copyClapText(name, info.name);
    info.flags = flags;
    info.channel_count = clapChannelCount(plugin.layout());
    info.port_type = clapPortType(plugin.layout());
    info.in_place_pair = CLAP_INVALID_ID;
    return info;
}

std::uint32_t audioPortCount(const clap_plugin* plugin, bool isInput) noexcept {
    return isInput ? static_cast<std::uint32_t>(ClapPluginAdapter::of(plugin).inputPorts().size()) : 1;
}

bool getAudioPort(const clap_plugin* plugin, std::uint32_t index, bool isInput, clap_audio_port_info* info) noexcept {
    if (info == nullptr || index >= audioPortCount(plugin, isInput))
        return false;
    const ClapPluginAdapter& adapter = ClapPluginAdapter::of(plugin);
    *info = isInput ? adapter.inputPorts()[index] : adapter.outputPort();
    return true;
}

std::uint32_t notePortCount(const clap_plugin*, bool isInput) noexcept {
    return isInput ? 1 : 0;
}

bool getNotePort(const clap_plugin*, std::uint32_t index, bool isInput, clap_note_port_info* info) noexcept {
    if (info == nullptr || !isInput || index != 0)
        return false;
    *info = {};
    info->supported_dialects = CLAP_NOTE_DIALECT_CLAP | CLAP_NOTE_DIALECT_MIDI;
    info->preferred_dialect = CLAP_NOTE_DIALECT_MIDI;
    copyClapText("Note Port", info->name);
    return true;
}

} // namespace

const char* clapPortType(int layout) noexcept {
    switch (static_cast<chl::Layout>(layout)) {
    case chl::Layout::mono:
        return CLAP_PORT_MONO;
    case chl::Layout::stereo:
        return CLAP_PORT_STEREO;
    default:
        return CLAP_PORT_SURROUND;
    }
}

std::uint32_t clapChannelCount(int layout) noexcept {
    return static_cast<std::uint32_t>(chl::channelCount(static_cast<chl::Layout>(layout)));
}

std::vector<clap_audio_port_info> clapInputPorts(const GenericPlugin& plugin) {
    std::vector<clap_audio_port_info> ports;
    if (plugin.info.type != GenericPluginInfo::Type::instrument)
        ports.push_back(port(plugin, 0, "Main In", CLAP_AUDIO_PORT_IS_MAIN));
    if (plugin.info.has(GenericPluginInfo::sideChain) && plugin.sideChainSwitch())
        ports.push_back(port(plugin, 1, "Sidechain In", 0));
    return ports;
}

clap_audio_port_info clapOutputPort(const GenericPlugin& plugin) {
    return port(plugin, 0, "Main Out", CLAP_AUDIO_PORT_IS_MAIN);
}

const clap_plugin_audio_ports clapAudioPorts{audioPortCount, getAudioPort};
const clap_plugin_note_ports clapNotePorts{notePortCount, getNotePort};
