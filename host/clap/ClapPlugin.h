// The library's entry, the plug-in factory, an instance, its host and the process call.
// Thread tags: [main] one thread for life, [audio] a role that one thread at a time holds, [any].
#pragma once

#include "host/clap/ClapBase.h"
#include "host/clap/ClapEvents.h"

#include <cstdint>

struct clap_host;
struct clap_plugin;
struct clap_process;

inline constexpr char CLAP_PLUGIN_FACTORY_ID[] = "clap.plugin-factory";

// What process returns.
inline constexpr std::int32_t CLAP_PROCESS_ERROR = 0;
inline constexpr std::int32_t CLAP_PROCESS_CONTINUE = 1;
inline constexpr std::int32_t CLAP_PROCESS_CONTINUE_IF_NOT_QUIET = 2;
inline constexpr std::int32_t CLAP_PROCESS_TAIL = 3;
inline constexpr std::int32_t CLAP_PROCESS_SLEEP = 4;

extern "C" {

// What a library exports as clap_entry. init and deinit come in pairs, perhaps several; the factory lives until deinit.
struct clap_plugin_entry {
    ::clap_version clap_version;
    bool (*init)(const char* plugin_path) noexcept; // [any] path of the file or bundle; false: call nothing more
    void (*deinit)() noexcept;                      // [any]
    const void* (*get_factory)(const char* factory_id) noexcept; // [any] null: unknown id
};

// Strings live as long as the descriptor; features ends with a null pointer. Only id and name are mandatory.
struct clap_plugin_descriptor {
    ::clap_version clap_version;
    const char* id;
    const char* name;
    const char* vendor;
    const char* url;
    const char* manual_url;
    const char* support_url;
    const char* version;
    const char* description;
    const char* const* features;
};

// create_plugin must not call the host; the instance is released by its own destroy only.
struct clap_plugin_factory {
    std::uint32_t (*get_plugin_count)(const clap_plugin_factory*) noexcept; // [any]
    const clap_plugin_descriptor* (*get_plugin_descriptor)(const clap_plugin_factory*,
                                                           std::uint32_t index) noexcept; // [any]
    const clap_plugin* (*create_plugin)(const clap_plugin_factory*, const clap_host* host,
                                        const char* plugin_id) noexcept; // [any]
};

// An instance. States: created -init-> inactive -activate-> active -start_processing-> processing, and back.
struct clap_plugin {
    const clap_plugin_descriptor* desc;
    void* plugin_data;
    bool (*init)(const clap_plugin*) noexcept;    // [main]
    void (*destroy)(const clap_plugin*) noexcept; // [main & inactive]
    bool (*activate)(const clap_plugin*, double sample_rate, std::uint32_t min_frames,
                     std::uint32_t max_frames) noexcept;                       // [main & inactive]
    void (*deactivate)(const clap_plugin*) noexcept;                           // [main & active]
    bool (*start_processing)(const clap_plugin*) noexcept;                     // [audio & active & !processing]
    void (*stop_processing)(const clap_plugin*) noexcept;                      // [audio & processing]
    void (*reset)(const clap_plugin*) noexcept;                                // [audio & active]
    std::int32_t (*process)(const clap_plugin*, const clap_process*) noexcept; // [audio & processing]
    const void* (*get_extension)(const clap_plugin*, const char* id) noexcept; // [any]
    void (*on_main_thread)(const clap_plugin*) noexcept;                       // [main]
};

// Not to be called before the instance's init; outlives the instance.
struct clap_host {
    ::clap_version clap_version;
    void* host_data;
    const char* name;
    const char* vendor;
    const char* url;
    const char* version;
    const void* (*get_extension)(const clap_host*, const char* extension_id) noexcept; // [any]
    void (*request_restart)(const clap_host*) noexcept;                                // [any]
    void (*request_process)(const clap_host*) noexcept;                                // [any]
    void (*request_callback)(const clap_host*) noexcept;                               // [any]
};

// Exactly one of data32 and data64 is set.
struct clap_audio_buffer {
    float** data32;
    double** data64;
    std::uint32_t channel_count;
    std::uint32_t latency;       // samples to or from the sound card
    std::uint64_t constant_mask; // bit n: channel n is constant; a hint, the samples are there all the same
};

// One block. Everything in it is good only until process returns.
struct clap_process {
    std::int64_t steady_time; // sample clock of the instance, -1: unknown
    std::uint32_t frames_count;
    const clap_event_transport* transport; // at sample 0; null: free running
    const clap_audio_buffer* audio_inputs; // one a port, as many as audio-ports tells
    clap_audio_buffer* audio_outputs;
    std::uint32_t audio_inputs_count;
    std::uint32_t audio_outputs_count;
    const clap_input_events* in_events; // ascending by time
    const clap_output_events* out_events;
};

} // extern "C"
