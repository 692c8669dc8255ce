// The way from a preset's path to its bytes.
// Threads: any but audio.
#pragma once

#include <cstdint>
#include <istream>
#include <memory>
#include <string>
#include <string_view>

inline constexpr std::int64_t mostPresetBytes = 1 << 24; // a larger file is no preset

// The whole file in memory. What cannot be read, or is no plain file of that size, is a stream in the failed state.
std::unique_ptr<std::istream> openPresetFile(const std::string& path);

// Whether a preset may be called so: not empty, no separator, neither "." nor "..".
[[nodiscard]] bool isPresetName(std::string_view name) noexcept;
