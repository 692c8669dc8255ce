// Makes providers that tell a host where presets lie.
// Threads: any.
#pragma once

#include "host/clap/Clap.h"

extern const clap_preset_discovery_factory clapPresetDiscoveryFactory;
