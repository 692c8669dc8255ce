// CLAP events and the two lists that carry them.
#pragma once

#include "host/clap/ClapBase.h"

#include <cstdint>

using clap_beattime = std::int64_t;
using clap_sectime = std::int64_t;

inline constexpr std::int64_t CLAP_BEATTIME_FACTOR = std::int64_t{1} << 31;
inline constexpr std::int64_t CLAP_SECTIME_FACTOR = std::int64_t{1} << 31;

inline constexpr std::uint16_t CLAP_CORE_EVENT_SPACE_ID = 0;

// Flags of the header.
inline constexpr std::uint32_t CLAP_EVENT_IS_LIVE = 1 << 0;
inline constexpr std::uint32_t CLAP_EVENT_DONT_RECORD = 1 << 1;

// Types.
inline constexpr std::uint16_t CLAP_EVENT_NOTE_ON = 0;
inline constexpr std::uint16_t CLAP_EVENT_NOTE_OFF = 1;
inline constexpr std::uint16_t CLAP_EVENT_NOTE_CHOKE = 2;
inline constexpr std::uint16_t CLAP_EVENT_NOTE_END = 3;
inline constexpr std::uint16_t CLAP_EVENT_NOTE_EXPRESSION = 4;
inline constexpr std::uint16_t CLAP_EVENT_PARAM_VALUE = 5;
inline constexpr std::uint16_t CLAP_EVENT_PARAM_MOD = 6;
inline constexpr std::uint16_t CLAP_EVENT_PARAM_GESTURE_BEGIN = 7;
inline constexpr std::uint16_t CLAP_EVENT_PARAM_GESTURE_END = 8;
inline constexpr std::uint16_t CLAP_EVENT_TRANSPORT = 9;
inline constexpr std::uint16_t CLAP_EVENT_MIDI = 10;
inline constexpr std::uint16_t CLAP_EVENT_MIDI_SYSEX = 11;
inline constexpr std::uint16_t CLAP_EVENT_MIDI2 = 12;

inline constexpr std::int32_t CLAP_NOTE_EXPRESSION_VOLUME = 0;
inline constexpr std::int32_t CLAP_NOTE_EXPRESSION_PAN = 1;
inline constexpr std::int32_t CLAP_NOTE_EXPRESSION_TUNING = 2;
inline constexpr std::int32_t CLAP_NOTE_EXPRESSION_VIBRATO = 3;
inline constexpr std::int32_t CLAP_NOTE_EXPRESSION_EXPRESSION = 4;
inline constexpr std::int32_t CLAP_NOTE_EXPRESSION_BRIGHTNESS = 5;
inline constexpr std::int32_t CLAP_NOTE_EXPRESSION_PRESSURE = 6;

inline constexpr std::uint32_t CLAP_TRANSPORT_HAS_TEMPO = 1 << 0;
inline constexpr std::uint32_t CLAP_TRANSPORT_HAS_BEATS_TIMELINE = 1 << 1;
inline constexpr std::uint32_t CLAP_TRANSPORT_HAS_SECONDS_TIMELINE = 1 << 2;
inline constexpr std::uint32_t CLAP_TRANSPORT_HAS_TIME_SIGNATURE = 1 << 3;
inline constexpr std::uint32_t CLAP_TRANSPORT_IS_PLAYING = 1 << 4;
inline constexpr std::uint32_t CLAP_TRANSPORT_IS_RECORDING = 1 << 5;
inline constexpr std::uint32_t CLAP_TRANSPORT_IS_LOOP_ACTIVE = 1 << 6;
inline constexpr std::uint32_t CLAP_TRANSPORT_IS_WITHIN_PRE_ROLL = 1 << 7;

extern "C" {

// First member of every event; size counts the whole event. Unknown spaces and types are skipped.
struct clap_event_header {
    std::uint32_t size;
    std::uint32_t time; // samples from the start of the block
    std::uint16_t space_id;
    std::uint16_t type;
    std::uint32_t flags;
};

// In id, port, channel and key -1 matches everything.
struct clap_event_note {
    clap_event_header header;
    std::int32_t note_id;
    std::int16_t port_index;
    std::int16_t channel;
    std::int16_t key;
    double velocity; // 0 to 1
};

struct clap_event_note_expression {
    clap_event_header header;
    std::int32_t expression_id;
    std::int32_t note_id;
    std::int16_t port_index;
    std::int16_t channel;
    std::int16_t key;
    double value;
};

// Plain value. The cookie may be null even where the plug-in gave one.
struct clap_event_param_value {
    clap_event_header header;
    clap_id param_id;
    void* cookie;
    std::int32_t note_id;
    std::int16_t port_index;
    std::int16_t channel;
    std::int16_t key;
    double value;
};

// What sounds is value + amount.
struct clap_event_param_mod {
    clap_event_header header;
    clap_id param_id;
    void* cookie;
    std::int32_t note_id;
    std::int16_t port_index;
    std::int16_t channel;
    std::int16_t key;
    double amount;
};

// 20 bytes: in a byte buffer the event behind it has to be aligned again.
struct clap_event_param_gesture {
    clap_event_header header;
    clap_id param_id;
};

// A field counts only when its flag is set. Times are fixed point, see the factors.
struct clap_event_transport {
    clap_event_header header;
    std::uint32_t flags;
    clap_beattime song_pos_beats;
    clap_sectime song_pos_seconds;
    double tempo;     // beats per minute
    double tempo_inc; // per sample
    clap_beattime loop_start_beats;
    clap_beattime loop_end_beats;
    clap_sectime loop_start_seconds;
    clap_sectime loop_end_seconds;
    clap_beattime bar_start;
    std::int32_t bar_number; // the bar at position 0 is 0
    std::uint16_t tsig_num;
    std::uint16_t tsig_denom;
};

// Unsigned port here, signed in the note events.
struct clap_event_midi {
    clap_event_header header;
    std::uint16_t port_index;
    std::uint8_t data[3];
};

// The bytes are the sender's: a receiver that keeps the event copies them too.
struct clap_event_midi_sysex {
    clap_event_header header;
    std::uint16_t port_index;
    const std::uint8_t* buffer;
    std::uint32_t size;
};

// 36 bytes: in a byte buffer the event behind it has to be aligned again.
struct clap_event_midi2 {
    clap_event_header header;
    std::uint16_t port_index;
    std::uint32_t data[4];
};

// Ascending by time; used on the thread of the call that brings it.
struct clap_input_events {
    void* ctx;
    std::uint32_t (*size)(const clap_input_events*) noexcept;
    const clap_event_header* (*get)(const clap_input_events*, std::uint32_t index) noexcept;
};

// The list copies the event; false: full.
struct clap_output_events {
    void* ctx;
    bool (*try_push)(const clap_output_events*, const clap_event_header* event) noexcept;
};

} // extern "C"
