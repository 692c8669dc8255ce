#include "host/ClapExtensions.h"

#include "host/ClapGuard.h"
#include "host/ClapParameters.h"
#include "host/ClapPluginAdapter.h"
#include "host/ClapPortConfigs.h"
#include "host/ClapPorts.h"
#include "host/ClapState.h"

#include <cstring>

namespace {

std::uint32_t latencyOf(const clap_plugin* plugin) noexcept {
    return static_cast<std::uint32_t>(ClapPluginAdapter::of(plugin).editorSide().latency());
}

std::uint32_t tailOf(const clap_plugin* plugin) noexcept {
    const std::int32_t samples = ClapPluginAdapter::of(plugin).tail();
    return samples < 0 ? INT32_MAX : static_cast<std::uint32_t>(samples);
}

void trackChanged(const clap_plugin* plugin) noexcept {
    clapGuard(false, [&] { return ClapPluginAdapter::of(plugin).nameAfterTrack(true), true; });
}

bool presetFromLocation(const clap_plugin* plugin, std::uint32_t kind, const char* location, const char*) noexcept {
    return kind == CLAP_PRESET_DISCOVERY_LOCATION_FILE && location != nullptr &&
           clapGuard(false, [&] { return ClapPluginAdapter::of(plugin).loadPreset(location); });
}

constexpr clap_plugin_preset_load presetLoad{presetFromLocation};
constexpr clap_plugin_latency latency{latencyOf};
constexpr clap_plugin_tail tail{tailOf};
constexpr clap_plugin_track_info trackInfo{trackChanged};

struct Offer {
    const char* id;
    const void* table;
};

} // namespace

const void* clapExtensionTable(const char* id) noexcept {
    static constexpr Offer offers[] = {
        {CLAP_EXT_NOTE_PORTS, &clapNotePorts},
        {CLAP_EXT_AUDIO_PORTS, &clapAudioPorts},
        {CLAP_EXT_AUDIO_PORTS_CONFIG, &clapPortConfigs},
        {CLAP_EXT_PARAMS, &clapParameters},
        {CLAP_EXT_STATE, &clapState},
        {CLAP_EXT_LATENCY, &latency},
        {CLAP_EXT_TAIL, &tail},
        {CLAP_EXT_TRACK_INFO, &trackInfo},
        {CLAP_EXT_PRESET_LOAD, &presetLoad},
    };
    for (const Offer& offer : offers)
        if (std::strcmp(id, offer.id) == 0)
            return offer.table;
    return nullptr;
}
