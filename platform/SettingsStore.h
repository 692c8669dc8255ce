// Typed values under names, kept for a user or given by an administrator, in one place a key.
// Threads: any but audio. Every call goes to the disk.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <variant>
#include <vector>

using SettingBytes = std::vector<std::uint8_t>;
using SettingValue = std::variant<std::int32_t, std::string, SettingBytes>; // kinds never turn into each other
using SettingValues = std::map<std::string, SettingValue>;

struct SettingsKey {
    enum class Root { user, machine };

    Root root = Root::user;
    std::string path; // "Tessivane/Zelk/3.0", or "Tessivane" for all that this maker makes
};

bool settingsExist(const SettingsKey& key);

// Empty when there are none, or when what stands there is no whole set of values.
SettingValues readSettings(const SettingsKey& key);

// Replaces the values of these names and leaves those of other names as another program may have written them
// meanwhile. In files it is done wholly or not at all, for every other process and after a crash too; a registry takes
// each value for itself. False: not all is stored.
[[nodiscard]] bool writeSettings(const SettingsKey& key, const SettingValues& changed);
