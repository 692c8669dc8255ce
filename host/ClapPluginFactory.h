// Makes instances.
// Threads: any.
#pragma once

#include "host/clap/Clap.h"

extern const clap_plugin_factory clapPluginFactory;
