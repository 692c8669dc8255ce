// CLAP preset discovery (draft): a factory beside the plug-in factory that needs no instance.
// The calls may come on any thread, but on one at a time for a provider, an indexer or a receiver.
#pragma once

#include "host/clap/ClapBase.h"

#include <cstdint>

inline constexpr char CLAP_PRESET_DISCOVERY_FACTORY_ID[] = "clap.preset-discovery-factory/draft-2";
inline constexpr clap_timestamp_t CLAP_TIMESTAMP_UNKNOWN = 0;

inline constexpr std::uint32_t CLAP_PRESET_DISCOVERY_LOCATION_FILE = 0;
inline constexpr std::uint32_t CLAP_PRESET_DISCOVERY_LOCATION_PLUGIN = 1;

inline constexpr std::uint32_t CLAP_PRESET_DISCOVERY_IS_FACTORY_CONTENT = 1 << 0;
inline constexpr std::uint32_t CLAP_PRESET_DISCOVERY_IS_USER_CONTENT = 1 << 1;
inline constexpr std::uint32_t CLAP_PRESET_DISCOVERY_IS_DEMO_CONTENT = 1 << 2;
inline constexpr std::uint32_t CLAP_PRESET_DISCOVERY_IS_FAVORITE = 1 << 3;

extern "C" {

struct clap_preset_discovery_filetype {
    const char* name;
    const char* description;
    const char* file_extension; // without dot; null or empty: every file
};

// location is null for the kind PLUGIN.
struct clap_preset_discovery_location {
    std::uint32_t flags;
    const char* name;
    std::uint32_t kind;
    const char* location;
};

struct clap_preset_discovery_soundpack {
    std::uint32_t flags;
    const char* id;
    const char* name;
    const char* description;
    const char* homepage_url;
    const char* vendor;
    const char* image_path;
    clap_timestamp_t release_timestamp;
};

// The host's side: takes declarations during the provider's init and copies them.
struct clap_preset_discovery_indexer {
    ::clap_version clap_version;
    const char* name;
    const char* vendor;
    const char* url;
    const char* version;
    void* indexer_data;
    bool (*declare_filetype)(const clap_preset_discovery_indexer*,
                             const clap_preset_discovery_filetype* filetype) noexcept;
    bool (*declare_location)(const clap_preset_discovery_indexer*,
                             const clap_preset_discovery_location* location) noexcept;
    bool (*declare_soundpack)(const clap_preset_discovery_indexer*,
                              const clap_preset_discovery_soundpack* soundpack) noexcept;
    const void* (*get_extension)(const clap_preset_discovery_indexer*, const char* extension_id) noexcept;
};

// abi in lower case: "clap".
struct clap_plugin_id {
    const char* abi;
    const char* id;
};

// begin_preset opens a preset, what follows describes it; begin_preset false: stop.
struct clap_preset_discovery_metadata_receiver {
    void* receiver_data;
    void (*on_error)(const clap_preset_discovery_metadata_receiver*, std::int32_t os_error,
                     const char* error_message) noexcept;
    bool (*begin_preset)(const clap_preset_discovery_metadata_receiver*, const char* name,
                         const char* load_key) noexcept;
    void (*add_plugin_id)(const clap_preset_discovery_metadata_receiver*, const clap_plugin_id* plugin_id) noexcept;
    void (*set_soundpack_id)(const clap_preset_discovery_metadata_receiver*, const char* soundpack_id) noexcept;
    void (*set_flags)(const clap_preset_discovery_metadata_receiver*, std::uint32_t flags) noexcept;
    void (*add_creator)(const clap_preset_discovery_metadata_receiver*, const char* creator) noexcept;
    void (*set_description)(const clap_preset_discovery_metadata_receiver*, const char* description) noexcept;
    void (*set_timestamps)(const clap_preset_discovery_metadata_receiver*, clap_timestamp_t creation,
                           clap_timestamp_t modification) noexcept;
    void (*add_feature)(const clap_preset_discovery_metadata_receiver*, const char* feature) noexcept;
    void (*add_extra_info)(const clap_preset_discovery_metadata_receiver*, const char* key, const char* value) noexcept;
};

struct clap_preset_discovery_provider_descriptor {
    ::clap_version clap_version;
    const char* id;
    const char* name;
    const char* vendor;
};

// Used by one thread at a time. init declares everything, get_metadata comes once a file.
struct clap_preset_discovery_provider {
    const clap_preset_discovery_provider_descriptor* desc;
    void* provider_data;
    bool (*init)(const clap_preset_discovery_provider*) noexcept;
    void (*destroy)(const clap_preset_discovery_provider*) noexcept;
    bool (*get_metadata)(const clap_preset_discovery_provider*, std::uint32_t location_kind, const char* location,
                         const clap_preset_discovery_metadata_receiver* receiver) noexcept;
    const void* (*get_extension)(const clap_preset_discovery_provider*, const char* extension_id) noexcept;
};

// create must not call the indexer; the provider is released by its own destroy only.
struct clap_preset_discovery_factory {
    std::uint32_t (*count)(const clap_preset_discovery_factory*) noexcept; // [any]
    const clap_preset_discovery_provider_descriptor* (*get_descriptor)(const clap_preset_discovery_factory*,
                                                                       std::uint32_t index) noexcept; // [any]
    const clap_preset_discovery_provider* (*create)(const clap_preset_discovery_factory*,
                                                    const clap_preset_discovery_indexer* indexer,
                                                    const char* provider_id) noexcept; // [any]
};

} // extern "C"
