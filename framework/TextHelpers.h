// Small helpers for text. Letters are those of ASCII: names and unit words hold no others.
// Threads: any; those that return strings allocate.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

char upperCase(char c) noexcept;
std::string_view withoutBlanks(std::string_view text) noexcept; // at both ends

// Without regard to case.
[[nodiscard]] bool compareText(std::string_view a, std::string_view b) noexcept;
[[nodiscard]] bool startsWithText(std::string_view text, std::string_view start) noexcept;

// At commas. An empty text has no parts.
void splitList(std::string_view text, std::vector<std::string>& parts);

// Standard alphabet with "=" padding. False: a foreign character, a wrong length or padding inside; no bytes then.
[[nodiscard]] bool decodeBase64(std::string_view text, std::vector<std::uint8_t>& bytes);

std::string formatDate(std::chrono::year_month_day date); // "March 4, 2024"
std::string normalizeLineEnds(std::string_view text);     // CR, LF and CR LF become CR LF
