// Packs a folder of preset sources into the archive that the library unpacks at a user's.
// Threads: any.
#pragma once

#include <filesystem>
#include <string>

// Throws PresetSourceError with the file that is wrong.
std::string packPresets(const std::filesystem::path& folder);

std::string presetBytes(const struct PresetSource& source); // a binary preset
std::string mapBytes(int oldVersion);                       // a version map
