// The ports that an instance shows, and the tables that tell of them.
// Threads: main.
#pragma once

#include "host/clap/Clap.h"

#include <cstdint>
#include <vector>

class GenericPlugin;

std::vector<clap_audio_port_info> clapInputPorts(const GenericPlugin& plugin);
clap_audio_port_info clapOutputPort(const GenericPlugin& plugin);

const char* clapPortType(int layout) noexcept; // by layout index: mono, stereo, anything else surround
std::uint32_t clapChannelCount(int layout) noexcept;

extern const clap_plugin_audio_ports clapAudioPorts;
extern const clap_plugin_note_ports clapNotePorts;
