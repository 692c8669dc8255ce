// All preset sources of a folder, in an order to read them in, and the page that lists them.
// Threads: any.
#pragma once

#include "tools/resources/PresetSource.h"

#include <filesystem>
#include <string>
#include <vector>

struct CataloguedPreset {
    std::string folder; // below the root, with "/" between names; empty for the root
    std::string name;
    PresetSource source;
};

// The presets of a folder before its subfolders, each by name. Throws PresetSourceError with the file that is wrong.
std::vector<CataloguedPreset> readPresetCatalogue(const std::filesystem::path& root);

std::string presetPage(const std::vector<CataloguedPreset>& presets); // docs/presets.md
