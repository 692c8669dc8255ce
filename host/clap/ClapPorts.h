// CLAP extensions: audio ports, their ready-made configurations, note ports.
#pragma once

#include "host/clap/ClapPlugin.h"

#include <cstdint>

// Audio ports. Main ports stand at index 0.
inline constexpr char CLAP_EXT_AUDIO_PORTS[] = "clap.audio-ports";
inline constexpr char CLAP_PORT_MONO[] = "mono";
inline constexpr char CLAP_PORT_STEREO[] = "stereo";

inline constexpr std::uint32_t CLAP_AUDIO_PORT_IS_MAIN = 1 << 0;
inline constexpr std::uint32_t CLAP_AUDIO_PORT_SUPPORTS_64BITS = 1 << 1;
inline constexpr std::uint32_t CLAP_AUDIO_PORT_PREFERS_64BITS = 1 << 2;
inline constexpr std::uint32_t CLAP_AUDIO_PORT_REQUIRES_COMMON_SAMPLE_SIZE = 1 << 3;

// All but the names change only while inactive.
inline constexpr std::uint32_t CLAP_AUDIO_PORTS_RESCAN_NAMES = 1 << 0;
inline constexpr std::uint32_t CLAP_AUDIO_PORTS_RESCAN_FLAGS = 1 << 1;
inline constexpr std::uint32_t CLAP_AUDIO_PORTS_RESCAN_CHANNEL_COUNT = 1 << 2;
inline constexpr std::uint32_t CLAP_AUDIO_PORTS_RESCAN_PORT_TYPE = 1 << 3;
inline constexpr std::uint32_t CLAP_AUDIO_PORTS_RESCAN_IN_PLACE_PAIR = 1 << 4;
inline constexpr std::uint32_t CLAP_AUDIO_PORTS_RESCAN_LIST = 1 << 5;

extern "C" {

// port_type is a static string of the plug-in, compared by content; null or empty: unspecified.
struct clap_audio_port_info {
    clap_id id;
    char name[CLAP_NAME_SIZE];
    std::uint32_t flags;
    std::uint32_t channel_count;
    const char* port_type;
    clap_id in_place_pair; // port of the other side that may share memory, or CLAP_INVALID_ID
};

struct clap_plugin_audio_ports {
    std::uint32_t (*count)(const clap_plugin*, bool is_input) noexcept;                                       // [main]
    bool (*get)(const clap_plugin*, std::uint32_t index, bool is_input, clap_audio_port_info* info) noexcept; // [main]
};

struct clap_host_audio_ports {
    bool (*is_rescan_flag_supported)(const clap_host*, std::uint32_t flag) noexcept; // [main]
    void (*rescan)(const clap_host*, std::uint32_t flags) noexcept;                  // [main]
};

} // extern "C"

// Configurations. After select the host scans the ports again.
inline constexpr char CLAP_EXT_AUDIO_PORTS_CONFIG[] = "clap.audio-ports-config";
inline constexpr char CLAP_EXT_AUDIO_PORTS_CONFIG_INFO[] = "clap.audio-ports-config-info/draft-0";

extern "C" {

struct clap_audio_ports_config {
    clap_id id;
    char name[CLAP_NAME_SIZE];
    std::uint32_t input_port_count;
    std::uint32_t output_port_count;
    bool has_main_input;
    std::uint32_t main_input_channel_count;
    const char* main_input_port_type;
    bool has_main_output;
    std::uint32_t main_output_channel_count;
    const char* main_output_port_type;
};

struct clap_plugin_audio_ports_config {
    std::uint32_t (*count)(const clap_plugin*) noexcept;                                            // [main]
    bool (*get)(const clap_plugin*, std::uint32_t index, clap_audio_ports_config* config) noexcept; // [main]
    bool (*select)(const clap_plugin*, clap_id config_id) noexcept;                                 // [main & inactive]
};

struct clap_plugin_audio_ports_config_info {
    clap_id (*current_config)(const clap_plugin*) noexcept; // [main]
    bool (*get)(const clap_plugin*, clap_id config_id, std::uint32_t port_index, bool is_input,
                clap_audio_port_info* info) noexcept; // [main]
};

struct clap_host_audio_ports_config {
    void (*rescan)(const clap_host*) noexcept; // [main]
};

} // extern "C"

// Note ports.
inline constexpr char CLAP_EXT_NOTE_PORTS[] = "clap.note-ports";

inline constexpr std::uint32_t CLAP_NOTE_DIALECT_CLAP = 1 << 0;
inline constexpr std::uint32_t CLAP_NOTE_DIALECT_MIDI = 1 << 1;
inline constexpr std::uint32_t CLAP_NOTE_DIALECT_MIDI_MPE = 1 << 2;
inline constexpr std::uint32_t CLAP_NOTE_DIALECT_MIDI2 = 1 << 3;

inline constexpr std::uint32_t CLAP_NOTE_PORTS_RESCAN_ALL = 1 << 0;
inline constexpr std::uint32_t CLAP_NOTE_PORTS_RESCAN_NAMES = 1 << 1;

extern "C" {

// The name stands last here, unlike the audio port's.
struct clap_note_port_info {
    clap_id id;
    std::uint32_t supported_dialects;
    std::uint32_t preferred_dialect;
    char name[CLAP_NAME_SIZE];
};

struct clap_plugin_note_ports {
    std::uint32_t (*count)(const clap_plugin*, bool is_input) noexcept;                                      // [main]
    bool (*get)(const clap_plugin*, std::uint32_t index, bool is_input, clap_note_port_info* info) noexcept; // [main]
};

struct clap_host_note_ports {
    std::uint32_t (*supported_dialects)(const clap_host*) noexcept; // [main]
    void (*rescan)(const clap_host*, std::uint32_t flags) noexcept; // [main]
};

} // extern "C"
