// Text for the calls of Windows.
// Threads: main.
#pragma once

#include <string>
#include <string_view>

std::wstring wideText(std::string_view text);
std::string utf8Text(std::wstring_view text);

std::string lastErrorText(); // of the system's last failed call on this thread
