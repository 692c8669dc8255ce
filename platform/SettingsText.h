// The text form of a set of typed values: one a line, as in  RetinaEnabled=dword:150  Folder=text:"/home/me"
// Icon=binary:00ff
// Threads: any.
#pragma once

#include "platform/SettingsStore.h"

#include <string>
#include <string_view>

bool isSettingName(std::string_view name) noexcept; // not empty, no "=", no "#" in front, no control characters

// Names that are none are left out.
std::string settingsToText(const SettingValues& values);

// Lines that are no value are passed over, so that a person may write the file too. But a text of settingsToText that
// has lost its end, which its first line promises, gives nothing at all rather than a part.
SettingValues settingsFromText(std::string_view text);
