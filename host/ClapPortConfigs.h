// The channel layouts as port configurations; a configuration's id is the index of its layout.
// Threads: main.
#pragma once

#include "host/clap/Clap.h"

extern const clap_plugin_audio_ports_config clapPortConfigs;
