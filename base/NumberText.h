// Numbers to text and back, the same under every locale of the process.
// Threads: any. The text forms allocate.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// As printf would in the "C" locale with "%.*f"; infinities and not-a-numbers as std::to_chars writes them.
std::string fixedText(double value, int decimals);

// As "%.*g" in the "C" locale.
std::string generalText(double value, int digits);

// The shortest text that reads back as the same value.
std::string shortestText(double value);
std::string shortestText(float value);

std::string wholeText(std::int64_t value);

// Reads a decimal number at the start of the text, with sign ("+" too), point and exponent, but neither "inf" nor
// "nan". Returns how many characters it took, 0: no number, and the value is left alone. No blanks are skipped.
std::size_t readNumber(std::string_view text, double& value);
std::size_t readWhole(std::string_view text, std::int64_t& value);
