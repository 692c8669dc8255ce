// Tells a host where presets lie and what is in them, without an instance: the host may ask in a process that only
// scans.
// Threads: any, one at a time for an object.
#pragma once

#include "framework/GenericPluginInfo.h"
#include "host/clap/Clap.h"

#include <set>
#include <string>

class ClapPresetProvider {
public:
    ClapPresetProvider(const clap_preset_discovery_provider_descriptor& descriptor,
                       const clap_preset_discovery_indexer& wanted); // calls nothing of the indexer
    ClapPresetProvider(const ClapPresetProvider&) = delete;
    ClapPresetProvider& operator=(const ClapPresetProvider&) = delete;

    // Destroyed by the host, through the table's own entry.
    const clap_preset_discovery_provider* clapProvider() const noexcept { return &table; }

private:
    ~ClapPresetProvider() = default;
    static ClapPresetProvider& of(const clap_preset_discovery_provider* self) noexcept {
        return *static_cast<ClapPresetProvider*>(self->provider_data);
    }

    bool init();
    bool describe(const char* location, const clap_preset_discovery_metadata_receiver& receiver) const;

    clap_preset_discovery_provider table{};
    GenericPluginInfo info;
    const clap_preset_discovery_indexer& indexer;
    std::string presetFolder;
    std::set<std::string> favorites; // full paths
};
