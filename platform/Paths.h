// Texts of paths, UTF-8 with the separator of the platform; on POSIX any bytes, on Windows also "/" as it comes in.
// Threads: any.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

inline constexpr char pathSeparator = static_cast<char>(std::filesystem::path::preferred_separator);
inline constexpr std::string_view pathSeparators = pathSeparator == '/' ? "/" : "\\/"; // that may come in

std::string appendPath(std::string_view folder, std::string_view name); // exactly one separator between them
std::string withTrailingSeparator(std::string_view path);
std::string_view fileNameOf(std::string_view path) noexcept;     // behind the last separator, or all
std::string_view folderOf(std::string_view path) noexcept;       // up to and with the last separator, or nothing
std::string_view stripExtension(std::string_view name) noexcept; // from the last point on
std::string insertScaleSuffix(std::string_view name);            // "a.png" is "a_2x.png"
