#include "host/ClapHostExtensions.h"

#include <algorithm>
#include <cstring>

namespace {

// Hosts of later versions know the stabilised ids only, with the same layout.
constexpr char laterTrackInfo[] = "clap.track-info/1";
constexpr char laterContextMenu[] = "clap.context-menu/1";
constexpr char laterPresetLoad[] = "clap.preset-load/2";

template <typename Extension>
void fetchInto(const Extension*& extension, const clap_host& host, const char* id, const char* laterId = nullptr) {
    const void* found = host.get_extension(&host, id);
    if (found == nullptr && laterId != nullptr)
        found = host.get_extension(&host, laterId);
    extension = static_cast<const Extension*>(found);
}

} // namespace

void ClapHostExtensions::fetch(const clap_host& whose) {
    host = &whose;
    if (whose.get_extension == nullptr)
        return;
    fetchInto(params, whose, CLAP_EXT_PARAMS);
    fetchInto(threadCheck, whose, CLAP_EXT_THREAD_CHECK);
    fetchInto(state, whose, CLAP_EXT_STATE);
    fetchInto(latency, whose, CLAP_EXT_LATENCY);
    fetchInto(gui, whose, CLAP_EXT_GUI);
    fetchInto(trackInfo, whose, CLAP_EXT_TRACK_INFO, laterTrackInfo);
    fetchInto(contextMenu, whose, CLAP_EXT_CONTEXT_MENU, laterContextMenu);
    fetchInto(presetLoad, whose, CLAP_EXT_PRESET_LOAD, laterPresetLoad);
}

void ClapHostExtensions::latencyChanged() const noexcept {
    if (latency != nullptr && latency->changed != nullptr)
        latency->changed(host);
}

void ClapHostExtensions::markDirty() const noexcept {
    if (state != nullptr && state->mark_dirty != nullptr)
        state->mark_dirty(host);
}

void ClapHostExtensions::requestFlush() const noexcept {
    if (params != nullptr && params->request_flush != nullptr)
        params->request_flush(host);
}

void ClapHostExtensions::rescanValues() const noexcept {
    if (params != nullptr && params->rescan != nullptr)
        params->rescan(host, CLAP_PARAM_RESCAN_VALUES);
}

void ClapHostExtensions::presetLoaded(const char* path) const noexcept {
    if (presetLoad != nullptr && presetLoad->loaded != nullptr)
        presetLoad->loaded(host, CLAP_PRESET_DISCOVERY_LOCATION_FILE, path, nullptr);
}

void ClapHostExtensions::presetFailed(const char* path, const char* message) const noexcept {
    if (presetLoad != nullptr && presetLoad->on_error != nullptr)
        presetLoad->on_error(host, CLAP_PRESET_DISCOVERY_LOCATION_FILE, path, nullptr, 0, message);
}

bool ClapHostExtensions::trackName(std::string& name) const {
    clap_track_info info{};
    if (trackInfo == nullptr || trackInfo->get == nullptr || !trackInfo->get(host, &info))
        return false;
    name.clear();
    if ((info.flags & CLAP_TRACK_INFO_HAS_TRACK_NAME) != 0)
        name.assign(info.name, strnlen(info.name, sizeof(info.name)));
    return true;
}
