// One open key of the registry, closed when it goes.
// Threads: the one that made it.
#pragma once

#include "platform/SettingsStore.h"
#include "platform/windows/Windows.h"

#include <optional>
#include <string_view>

class RegistryKey {
public:
    enum class Access { read, write };

    // Writing makes the key with those above it. Reading one that does not exist gives a closed one.
    RegistryKey(HKEY root, std::string_view path, Access access = Access::read);
    ~RegistryKey();
    RegistryKey(const RegistryKey&) = delete;
    RegistryKey& operator=(const RegistryKey&) = delete;

    bool isOpen() const noexcept { return key != nullptr; }

    std::optional<SettingValue> value(std::string_view name) const; // nothing: none, or of a kind that is not ours
    SettingValues values() const;
    [[nodiscard]] bool setValue(std::string_view name, const SettingValue& value) const;

private:
    std::optional<SettingValue> valueOf(const wchar_t* name) const;

    HKEY key = nullptr;
};
