#include "framework/TextHelpers.h"

#include "base/NumberText.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::array<std::string_view, 12> monthNames{"January",   "February", "March",    "April",
                                                      "May",       "June",     "July",     "August",
                                                      "September", "October",  "November", "December"};

// -1: not of the alphabet.
int base64Value(char c) noexcept {
    if (c >= 'A' && c <= 'Z')
        return c - 'A';
    if (c >= 'a' && c <= 'z')
        return c - 'a' + 26;
    if (c >= '0' && c <= '9')
        return c - '0' + 52;
    return c == '+' ? 62 : c == '/' ? 63 : -1;
}

} // namespace

char upperCase(char c) noexcept {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

std::string_view withoutBlanks(std::string_view text) noexcept {
    constexpr std::string_view blanks = " \t";
    const std::size_t first = text.find_first_not_of(blanks);
    return first == std::string_view::npos ? std::string_view{}
                                           : text.substr(first, text.find_last_not_of(blanks) + 1 - first);
}

bool compareText(std::string_view a, std::string_view b) noexcept {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return upperCase(x) == upperCase(y); });
}

bool startsWithText(std::string_view text, std::string_view start) noexcept {
    return compareText(text.substr(0, start.size()), start);
}

void splitList(std::string_view text, std::vector<std::string>& parts) {
    parts.clear();
    if (text.empty())
        return;
    std::size_t start = 0;
    for (std::size_t comma = text.find(','); comma != std::string_view::npos; comma = text.find(',', start)) {
        parts.emplace_back(text.substr(start, comma - start));
        start = comma + 1;
    }
    parts.emplace_back(text.substr(start));
}

bool decodeBase64(std::string_view text, std::vector<std::uint8_t>& bytes) {
    bytes.clear();
    if (text.size() % 4 != 0)
        return false;
    const std::size_t padding = text.ends_with("==") ? 2 : text.ends_with("=") ? 1 : 0;
    const std::string_view digits = text.substr(0, text.size() - padding);
    if (std::any_of(digits.begin(), digits.end(), [](char c) { return base64Value(c) < 0; }))
        return false;
    bytes.reserve(digits.size() * 3 / 4);
    std::uint32_t bits = 0;
    int held = 0;
    for (const char c : digits) {
        bits = bits << 6 | static_cast<std::uint32_t>(base64Value(c));
        held += 6;
        if (held < 8)
            continue;
        held -= 8;
        bytes.push_back(static_cast<std::uint8_t>(bits >> held & 0xFFu));
    }
    return true;
}

std::string formatDate(std::chrono::year_month_day date) {
    const unsigned month = static_cast<unsigned>(date.month());
    const std::string_view name = month >= 1 && month <= 12 ? monthNames[month - 1] : std::string_view{};
    return std::string(name) + " " + wholeText(static_cast<unsigned>(date.day())) + ", " +
           wholeText(static_cast<int>(date.year()));
}

std::string normalizeLineEnds(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\r' && text[i] != '\n') {
            result += text[i];
            continue;
        }
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n')
            ++i;
        result += "\r\n";
    }
    return result;
}
