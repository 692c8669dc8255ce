// Gathers values and stores them under one key when it goes, in one pass over the store. What cannot be stored is
// dropped: settings are never worth an error.
// Threads: main.
#pragma once

#include "framework/SettingSerializer.h"
#include "platform/SettingsStore.h"

#include <utility>

class RegistryWriter final : public SettingSerializer {
public:
    explicit RegistryWriter(SettingsKey wanted) : key(std::move(wanted)) {}
    ~RegistryWriter() override;
    RegistryWriter(const RegistryWriter&) = delete;
    RegistryWriter& operator=(const RegistryWriter&) = delete;

    bool isWriter() const noexcept override { return true; }
    void blobValue(std::string_view name, std::vector<std::uint8_t>& bytes) override;
    std::int32_t intValue(std::string_view name, std::int32_t value, std::int32_t standard) override;
    void stringValue(std::string& result, std::string_view name, std::string_view value,
                     std::string_view standard) override;

private:
    const SettingsKey key;
    SettingValues values;
};
