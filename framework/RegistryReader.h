// Gives what the store holds under one key, as it stood when the reader was made.
// Threads: main.
#pragma once

#include "framework/SettingSerializer.h"
#include "platform/SettingsStore.h"

class RegistryReader final : public SettingSerializer {
public:
    explicit RegistryReader(const SettingsKey& key) : values(readSettings(key)) {}

    bool isWriter() const noexcept override { return false; }
    void blobValue(std::string_view name, std::vector<std::uint8_t>& bytes) override;
    std::int32_t intValue(std::string_view name, std::int32_t value, std::int32_t standard) override;
    void stringValue(std::string& result, std::string_view name, std::string_view value,
                     std::string_view standard) override;

    bool has(std::string_view name) const { return values.count(std::string(name)) != 0; }

private:
    template <typename T>
    const T* find(std::string_view name) const; // null: absent, or of another kind

    const SettingValues values;
};
