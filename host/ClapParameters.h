// The parameters as a host sees them: stored values, their ranges and texts.
// Threads: main, flush as the state of the instance demands.
#pragma once

#include "host/clap/Clap.h"

extern const clap_plugin_params clapParameters;
