// Under which keys the settings of a product lie.
// Threads: any.
#pragma once

#include "framework/VersionInfo.h"
#include "platform/SettingsStore.h"

#include <cstdint>
#include <string>

SettingsKey productSettingsKey(const VersionInfo& product, std::int32_t majorVersion = VersionInfo::majorVersion());
SettingsKey machineSettingsKey(const VersionInfo& product); // given by an administrator, only read
SettingsKey makerSettingsKey();                             // for all products of the maker, only read

// Where presets lie unless the user chose another folder; empty: this user has no place for documents.
std::string standardPresetFolder(const VersionInfo& product);
