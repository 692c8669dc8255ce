// CLAP extensions: parameters, state, latency, tail.
#pragma once

#include "host/clap/ClapPlugin.h"

#include <cstdint>

// Parameters.
inline constexpr char CLAP_EXT_PARAMS[] = "clap.params";

inline constexpr std::uint32_t CLAP_PARAM_IS_STEPPED = 1 << 0;
inline constexpr std::uint32_t CLAP_PARAM_IS_PERIODIC = 1 << 1;
inline constexpr std::uint32_t CLAP_PARAM_IS_HIDDEN = 1 << 2;
inline constexpr std::uint32_t CLAP_PARAM_IS_READONLY = 1 << 3;
inline constexpr std::uint32_t CLAP_PARAM_IS_BYPASS = 1 << 4;
inline constexpr std::uint32_t CLAP_PARAM_IS_AUTOMATABLE = 1 << 5;
inline constexpr std::uint32_t CLAP_PARAM_IS_AUTOMATABLE_PER_NOTE_ID = 1 << 6;
inline constexpr std::uint32_t CLAP_PARAM_IS_AUTOMATABLE_PER_KEY = 1 << 7;
inline constexpr std::uint32_t CLAP_PARAM_IS_AUTOMATABLE_PER_CHANNEL = 1 << 8;
inline constexpr std::uint32_t CLAP_PARAM_IS_AUTOMATABLE_PER_PORT = 1 << 9;
inline constexpr std::uint32_t CLAP_PARAM_IS_MODULATABLE = 1 << 10;
inline constexpr std::uint32_t CLAP_PARAM_IS_MODULATABLE_PER_NOTE_ID = 1 << 11;
inline constexpr std::uint32_t CLAP_PARAM_IS_MODULATABLE_PER_KEY = 1 << 12;
inline constexpr std::uint32_t CLAP_PARAM_IS_MODULATABLE_PER_CHANNEL = 1 << 13;
inline constexpr std::uint32_t CLAP_PARAM_IS_MODULATABLE_PER_PORT = 1 << 14;
inline constexpr std::uint32_t CLAP_PARAM_REQUIRES_PROCESS = 1 << 15;
inline constexpr std::uint32_t CLAP_PARAM_IS_ENUM = 1 << 16;

inline constexpr std::uint32_t CLAP_PARAM_RESCAN_VALUES = 1 << 0;
inline constexpr std::uint32_t CLAP_PARAM_RESCAN_TEXT = 1 << 1;
inline constexpr std::uint32_t CLAP_PARAM_RESCAN_INFO = 1 << 2;
inline constexpr std::uint32_t CLAP_PARAM_RESCAN_ALL = 1 << 3;

inline constexpr std::uint32_t CLAP_PARAM_CLEAR_ALL = 1 << 0;
inline constexpr std::uint32_t CLAP_PARAM_CLEAR_AUTOMATIONS = 1 << 1;
inline constexpr std::uint32_t CLAP_PARAM_CLEAR_MODULATIONS = 1 << 2;

extern "C" {

// Values are plain; id is stable for ever, the cookie only until RESCAN_ALL.
struct clap_param_info {
    clap_id id;
    std::uint32_t flags;
    void* cookie;
    char name[CLAP_NAME_SIZE];
    char module[CLAP_PATH_SIZE]; // path with / between levels
    double min_value;
    double max_value;
    double default_value;
};

// flush takes and gives parameter events without audio, never at the same time as process.
struct clap_plugin_params {
    std::uint32_t (*count)(const clap_plugin*) noexcept;                                       // [main]
    bool (*get_info)(const clap_plugin*, std::uint32_t index, clap_param_info* info) noexcept; // [main]
    bool (*get_value)(const clap_plugin*, clap_id param_id, double* out_value) noexcept;       // [main]
    bool (*value_to_text)(const clap_plugin*, clap_id param_id, double value, char* out,
                          std::uint32_t capacity) noexcept;                                                    // [main]
    bool (*text_to_value)(const clap_plugin*, clap_id param_id, const char* text, double* out_value) noexcept; // [main]
    void (*flush)(const clap_plugin*, const clap_input_events* in,
                  const clap_output_events* out) noexcept; // [audio] when active, [main] when inactive
};

struct clap_host_params {
    void (*rescan)(const clap_host*, std::uint32_t flags) noexcept;                  // [main]
    void (*clear)(const clap_host*, clap_id param_id, std::uint32_t flags) noexcept; // [main]
    void (*request_flush)(const clap_host*) noexcept;                                // [any but audio]
};

} // extern "C"

// State, latency, tail.
inline constexpr char CLAP_EXT_STATE[] = "clap.state";
inline constexpr char CLAP_EXT_LATENCY[] = "clap.latency";
inline constexpr char CLAP_EXT_TAIL[] = "clap.tail";

extern "C" {

struct clap_plugin_state {
    bool (*save)(const clap_plugin*, const clap_ostream* stream) noexcept; // [main]
    bool (*load)(const clap_plugin*, const clap_istream* stream) noexcept; // [main]
};

struct clap_host_state {
    void (*mark_dirty)(const clap_host*) noexcept; // [main]
};

struct clap_plugin_latency {
    std::uint32_t (*get)(const clap_plugin*) noexcept; // [main] samples
};

// While active the plug-in asks for a restart instead.
struct clap_host_latency {
    void (*changed)(const clap_host*) noexcept; // [main]
};

// INT32_MAX or more: endless.
struct clap_plugin_tail {
    std::uint32_t (*get)(const clap_plugin*) noexcept; // [main, audio]
};

struct clap_host_tail {
    void (*changed)(const clap_host*) noexcept; // [audio]
};

} // extern "C"
