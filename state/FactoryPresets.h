// Unpacks the presets that the library carries into a user's folders.
// Threads: main.
#pragma once

#include <string>
#include <string_view>

enum class FactoryFiles {
    onlyMissing, // a file that is there stays
    keepEdited,  // a file that differs is first kept as "NAME (old).tvp"
    overwrite,
};

// False: the library has no archive, or not all of it could be written; what was written stays.
[[nodiscard]] bool unpackFactoryPresets(const std::string& dataFolder, const std::string& presetFolder,
                                        FactoryFiles how);
