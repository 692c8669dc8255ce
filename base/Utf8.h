// Names of files as text: bytes that may be no valid UTF-8 come in, valid text comes out.
// Threads: any; they allocate.
#pragma once

#include <string>
#include <string_view>

inline constexpr char32_t replacementPoint = 0xFFFD;

std::u32string codePoints(std::string_view bytes); // a replacement for each byte that fits in no character
std::string utf8(std::u32string_view points);
std::string validUtf8(std::string_view bytes);

// Without a locale: Latin, Greek, Cyrillic and Armenian letters, one point for one.
char32_t lowerCasePoint(char32_t point) noexcept;
std::u32string lowerCasePoints(std::string_view bytes);
