// The plug-in's state in a file, and presets by their path.
// Threads: main.
#pragma once

#include "tools/host/PluginInstance.h"

#include <string>

// All throw Failure.
void loadState(PluginInstance& instance, const std::string& path);
void saveState(const PluginInstance& instance, const std::string& path);
void loadPreset(PluginInstance& instance, const std::string& path);
