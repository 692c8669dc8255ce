// CLAP extensions that a host offers for diagnosis and context, and the drafts that go with a track:
// thread check, log, track info, preset load, state context, surround.
#pragma once

#include "host/clap/ClapPlugin.h"

#include <cstdint>

// Thread check and log.
inline constexpr char CLAP_EXT_THREAD_CHECK[] = "clap.thread-check";
inline constexpr char CLAP_EXT_LOG[] = "clap.log";

inline constexpr std::int32_t CLAP_LOG_DEBUG = 0;
inline constexpr std::int32_t CLAP_LOG_INFO = 1;
inline constexpr std::int32_t CLAP_LOG_WARNING = 2;
inline constexpr std::int32_t CLAP_LOG_ERROR = 3;
inline constexpr std::int32_t CLAP_LOG_FATAL = 4;
inline constexpr std::int32_t CLAP_LOG_HOST_MISBEHAVING = 5;
inline constexpr std::int32_t CLAP_LOG_PLUGIN_MISBEHAVING = 6;

extern "C" {

struct clap_host_thread_check {
    bool (*is_main_thread)(const clap_host*) noexcept;  // [any]
    bool (*is_audio_thread)(const clap_host*) noexcept; // [any]
};

struct clap_host_log {
    void (*log)(const clap_host*, std::int32_t severity, const char* msg) noexcept; // [any]
};

} // extern "C"

// Track info (draft).
inline constexpr char CLAP_EXT_TRACK_INFO[] = "clap.track-info.draft/1";

inline constexpr std::uint64_t CLAP_TRACK_INFO_HAS_TRACK_NAME = 1 << 0;
inline constexpr std::uint64_t CLAP_TRACK_INFO_HAS_TRACK_COLOR = 1 << 1;
inline constexpr std::uint64_t CLAP_TRACK_INFO_HAS_AUDIO_CHANNEL = 1 << 2;
inline constexpr std::uint64_t CLAP_TRACK_INFO_IS_FOR_RETURN_TRACK = 1 << 3;
inline constexpr std::uint64_t CLAP_TRACK_INFO_IS_FOR_BUS = 1 << 4;
inline constexpr std::uint64_t CLAP_TRACK_INFO_IS_FOR_MASTER = 1 << 5;

extern "C" {

// audio_port_type is the host's string: copied, not kept.
struct clap_track_info {
    std::uint64_t flags; // 64 bits
    char name[CLAP_NAME_SIZE];
    clap_color color;
    std::int32_t audio_channel_count;
    const char* audio_port_type;
};

struct clap_plugin_track_info {
    void (*changed)(const clap_plugin*) noexcept; // [main]
};

struct clap_host_track_info {
    bool (*get)(const clap_host*, clap_track_info* info) noexcept; // [main]
};

} // extern "C"

// Preset load (draft). Location kinds are those of the preset discovery.
inline constexpr char CLAP_EXT_PRESET_LOAD[] = "clap.preset-load.draft/2";

extern "C" {

// Kind and location as the preset provider declared them; load_key null for a file of one preset.
struct clap_plugin_preset_load {
    bool (*from_location)(const clap_plugin*, std::uint32_t location_kind, const char* location,
                          const char* load_key) noexcept; // [main]
};

struct clap_host_preset_load {
    void (*on_error)(const clap_host*, std::uint32_t location_kind, const char* location, const char* load_key,
                     std::int32_t os_error, const char* msg) noexcept; // [main]
    void (*loaded)(const clap_host*, std::uint32_t location_kind, const char* location,
                   const char* load_key) noexcept; // [main]
};

} // extern "C"

// State context (draft).
inline constexpr char CLAP_EXT_STATE_CONTEXT[] = "clap.state-context.draft/1";

inline constexpr std::uint32_t CLAP_STATE_CONTEXT_FOR_DUPLICATE = 1;
inline constexpr std::uint32_t CLAP_STATE_CONTEXT_FOR_PRESET = 2;

extern "C" {

// Any save can be loaded by any load, whatever the context of each.
struct clap_plugin_state_context {
    bool (*save)(const clap_plugin*, const clap_ostream* stream, std::uint32_t context_type) noexcept; // [main]
    bool (*load)(const clap_plugin*, const clap_istream* stream, std::uint32_t context_type) noexcept; // [main]
};

} // extern "C"

// Surround (draft).
inline constexpr char CLAP_EXT_SURROUND[] = "clap.surround.draft/4";
inline constexpr char CLAP_PORT_SURROUND[] = "surround";

inline constexpr std::uint8_t CLAP_SURROUND_FL = 0;
inline constexpr std::uint8_t CLAP_SURROUND_FR = 1;
inline constexpr std::uint8_t CLAP_SURROUND_FC = 2;
inline constexpr std::uint8_t CLAP_SURROUND_LFE = 3;
inline constexpr std::uint8_t CLAP_SURROUND_BL = 4;
inline constexpr std::uint8_t CLAP_SURROUND_BR = 5;
inline constexpr std::uint8_t CLAP_SURROUND_FLC = 6;
inline constexpr std::uint8_t CLAP_SURROUND_FRC = 7;
inline constexpr std::uint8_t CLAP_SURROUND_BC = 8;
inline constexpr std::uint8_t CLAP_SURROUND_SL = 9;
inline constexpr std::uint8_t CLAP_SURROUND_SR = 10;
inline constexpr std::uint8_t CLAP_SURROUND_TC = 11;
inline constexpr std::uint8_t CLAP_SURROUND_TFL = 12;
inline constexpr std::uint8_t CLAP_SURROUND_TFC = 13;
inline constexpr std::uint8_t CLAP_SURROUND_TFR = 14;
inline constexpr std::uint8_t CLAP_SURROUND_TBL = 15;
inline constexpr std::uint8_t CLAP_SURROUND_TBC = 16;
inline constexpr std::uint8_t CLAP_SURROUND_TBR = 17;

extern "C" {

// Bit n of a mask is channel id n; a map holds one id a channel.
struct clap_plugin_surround {
    bool (*is_channel_mask_supported)(const clap_plugin*, std::uint64_t channel_mask) noexcept; // [main]
    std::uint32_t (*get_channel_map)(const clap_plugin*, bool is_input, std::uint32_t port_index,
                                     std::uint8_t* channel_map, std::uint32_t capacity) noexcept; // [main]
};

struct clap_host_surround {
    void (*changed)(const clap_host*) noexcept; // [main]
};

} // extern "C"
