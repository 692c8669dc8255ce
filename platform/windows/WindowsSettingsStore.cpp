// The registry. A call opens its key, works and closes it. Values are whole each for itself, and a writer touches no
// name but its own, so writers of several processes lose nothing of one another.
#include "platform/SettingsStore.h"
#include "platform/SettingsText.h"
#include "platform/windows/RegistryKey.h"

#include <algorithm>

namespace {

HKEY rootOf(const SettingsKey& key) noexcept {
    return key.root == SettingsKey::Root::user ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
}

std::string pathOf(const SettingsKey& key) {
    std::string path = "Software\\" + key.path;
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

} // namespace

bool settingsExist(const SettingsKey& key) {
    return !key.path.empty() && RegistryKey(rootOf(key), pathOf(key)).isOpen();
}

SettingValues readSettings(const SettingsKey& key) {
    return key.path.empty() ? SettingValues{} : RegistryKey(rootOf(key), pathOf(key)).values();
}

bool writeSettings(const SettingsKey& key, const SettingValues& changed) {
    if (key.path.empty())
        return false;
    const RegistryKey opened(rootOf(key), pathOf(key), RegistryKey::Access::write);
    bool stored = opened.isOpen();
    for (const auto& [name, value] : changed)
        if (isSettingName(name) && opened.value(name) != value)
            stored = opened.setValue(name, value) && stored;
    return stored;
}
