// Paths as the system takes them, from and to the UTF-8 text of command lines, plug-ins and messages.
// Threads: any.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

inline std::filesystem::path filePath(std::string_view text) {
    return std::filesystem::path(std::u8string(text.begin(), text.end()));
}

inline std::string pathText(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}
