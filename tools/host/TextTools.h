// Small text helpers: trimming, comparing without case, and the names that are near a misspelt one.
// Threads: any.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

std::string trimmed(std::string_view text);
std::string lowerCase(std::string_view text); // ASCII letters only
// One line for people: control characters become blanks.
std::string onOneLine(std::string_view text);

bool sameWord(std::string_view a, std::string_view b);

// At most three candidates that the user may have meant, nearest first.
std::vector<std::string> nearNames(std::string_view wanted, std::span<const std::string> candidates);

// "; did you mean "A" or "B"?", or nothing when no candidate is near.
std::string suggestion(std::string_view wanted, std::span<const std::string> candidates);

// A whole text that is one number, without anything behind it.
[[nodiscard]] bool wholeNumber(std::string_view text, double& value);
