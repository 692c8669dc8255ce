// The presets that a plug-in file tells of through its discovery factory, as a host with a browser would list them.
// Threads: main.
#pragma once

#include "tools/host/PluginLibrary.h"

#include <cstdint>
#include <string>
#include <vector>

struct IndexedPreset {
    std::string name;
    std::string path;
    std::string loadKey;
    std::vector<std::string> creators;
    std::string description;
    std::vector<std::string> features;
    std::vector<std::string> plugins; // ids that can load it
    std::uint32_t flags = 0;          // of the preset, or of its location when it has none
};

struct IndexedLocation {
    std::string name;
    std::string path; // a file or a folder; empty: inside the plug-in
    std::uint32_t kind = 0;
    std::uint32_t flags = 0;
    std::vector<IndexedPreset> presets; // in the order of their paths
};

struct PresetIndex {
    std::vector<IndexedLocation> locations;
    std::vector<std::string> extensions; // without dot
    std::vector<std::string> errors;     // what providers reported
    std::size_t refusedFiles = 0;        // files of a fitting type that no provider took
};

PresetIndex indexPresets(const PluginLibrary& library); // throws Failure when the file has no presets to tell of

// The path of a preset that is named by its path or by its name. Throws Failure when there is none.
std::string findPreset(const PluginLibrary& library, const std::string& nameOrPath);
