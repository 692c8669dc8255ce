// What a preset file says of itself, read without its values.
// Threads: any but audio.
#pragma once

#include "state/Preset.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

// Name, author, description and tags of the file at preset.path. False: it cannot be read, or is no preset with one of
// these signatures. Binary presets say something only from that version on, 0: never.
[[nodiscard]] bool readPresetMetadata(Preset& preset, std::span<const std::string_view> signatures,
                                      std::int32_t customValuesFromVersion);
