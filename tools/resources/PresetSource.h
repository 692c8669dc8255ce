// Reads a factory preset as its author writes it (resources/presets/README.md tells the form) and gives its values.
// Threads: any.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

class PresetSourceError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

inline constexpr std::string_view presetSourceExtension = ".preset";

struct PresetSource {
    std::string about;         // what the preset is for
    std::vector<float> values; // in the order of a preset of version 4
};

PresetSource readPresetSource(std::string_view text); // throws PresetSourceError, with the line
