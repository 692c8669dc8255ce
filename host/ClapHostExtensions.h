// What this host offers: its extensions, null where it has none, each call safe when it left the function out.
// Threads: fetch on the main thread; the calls as marked.
#pragma once

#include "host/clap/Clap.h"

#include <cstdint>
#include <string>

class ClapHostExtensions {
public:
    void fetch(const clap_host& whose); // [main] from the instance's init on

    bool hasParams() const noexcept { return params != nullptr; }
    bool hasPresetLoad() const noexcept { return presetLoad != nullptr; }

    void latencyChanged() const noexcept;                                    // [main]
    void markDirty() const noexcept;                                         // [main]
    void requestFlush() const noexcept;                                      // [main]
    void rescanValues() const noexcept;                                      // [main]
    void presetLoaded(const char* path) const noexcept;                      // [main]
    void presetFailed(const char* path, const char* message) const noexcept; // [main]
    bool trackName(std::string& name) const; // [main] false: the host tells nothing of the track

private:
    const clap_host* host = nullptr;
    const clap_host_params* params = nullptr;
    const clap_host_thread_check* threadCheck = nullptr; // asked for and not otherwise used
    const clap_host_state* state = nullptr;
    const clap_host_latency* latency = nullptr;
    const clap_host_gui* gui = nullptr;
    const clap_host_track_info* trackInfo = nullptr;
    const clap_host_context_menu* contextMenu = nullptr;
    const clap_host_preset_load* presetLoad = nullptr;
};
