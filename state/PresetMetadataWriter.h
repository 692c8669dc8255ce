// Changes what a preset file says of itself and keeps its values.
// Threads: any but audio.
#pragma once

#include "state/Preset.h"

#include <cstdint>
#include <span>
#include <string_view>

// False: it is no preset of ours, a binary one without room for metadata, or cannot be written; it is then unchanged.
[[nodiscard]] bool writePresetMetadata(const Preset& preset, std::span<const std::string_view> signatures,
                                       std::int32_t customValuesFromVersion);
