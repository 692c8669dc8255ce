#include "base/NumberText.h"

#include <array>
#include <charconv>

namespace {

constexpr std::size_t longestFixed = 340; // 309 digits of the largest double, sign, point and decimals

template <typename T, typename... Format>
std::string textOf(T value, Format... format) {
    std::array<char, longestFixed + 64> buffer;
    const std::to_chars_result result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format...);
    return {buffer.data(), result.ec == std::errc() ? result.ptr : buffer.data()};
}

bool isDigit(char c) noexcept {
    return c >= '0' && c <= '9';
}

// from_chars knows no plus sign and does know "inf" and "nan": both are settled here.
std::string_view withoutSign(std::string_view text, bool& negative) {
    negative = !text.empty() && text.front() == '-';
    if (!text.empty() && (text.front() == '-' || text.front() == '+'))
        text.remove_prefix(1);
    return text;
}

} // namespace

std::string fixedText(double value, int decimals) {
    return textOf(value, std::chars_format::fixed, decimals < 0 ? 0 : decimals > 60 ? 60 : decimals);
}

std::string generalText(double value, int digits) {
    return textOf(value, std::chars_format::general, digits < 1 ? 1 : digits > 60 ? 60 : digits);
}

std::string shortestText(double value) {
    return textOf(value);
}

std::string shortestText(float value) {
    return textOf(value);
}

std::string wholeText(std::int64_t value) {
    return textOf(value);
}

std::size_t readNumber(std::string_view text, double& value) {
    bool negative = false;
    const std::string_view digits = withoutSign(text, negative);
    const bool pointFirst = digits.size() > 1 && digits[0] == '.' && isDigit(digits[1]);
    if (digits.empty() || !(isDigit(digits[0]) || pointFirst))
        return 0;
    double magnitude = 0.0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), magnitude);
    if (error != std::errc())
        return 0;
    value = negative ? -magnitude : magnitude;
    return static_cast<std::size_t>(end - text.data());
}

std::size_t readWhole(std::string_view text, std::int64_t& value) {
    bool negative = false;
    const std::string_view digits = withoutSign(text, negative);
    if (digits.empty() || !isDigit(digits[0]))
        return 0;
    // With the minus sign, so that the most negative number is read too.
    const char* const first = negative ? text.data() : digits.data();
    std::int64_t whole = 0;
    const auto [end, error] = std::from_chars(first, digits.data() + digits.size(), whole);
    if (error != std::errc())
        return 0;
    value = whole;
    return static_cast<std::size_t>(end - text.data());
}
