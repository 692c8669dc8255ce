// UTF-8 inside, UTF-16 at each call of the system.
// Threads: any but audio.
#pragma once

#include <string>
#include <string_view>

std::wstring wideText(std::string_view text); // what is no UTF-8 becomes U+FFFD
std::string utf8Text(std::wstring_view text); // what is no UTF-16 becomes U+FFFD

// For calls that take a path. One that is near the system's old limit of 260 is given in the form that knows no limit.
std::wstring widePath(std::string_view path);
