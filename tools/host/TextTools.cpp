#include "tools/host/TextTools.h"

#include "base/NumberText.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>

namespace {

// Levenshtein's distance, one row kept.
std::size_t editDistance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i);
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t replaced = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
            diagonal = std::exchange(row[j], std::min({replaced, row[j] + 1, row[j - 1] + 1}));
        }
    }
    return row.back();
}

} // namespace

std::string trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return std::string(text.substr(first, text.find_last_not_of(blanks) - first + 1));
}

std::string lowerCase(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; });
    return result;
}

std::string onOneLine(std::string_view text) {
    std::string result(text);
    std::replace_if(
        result.begin(), result.end(), [](char c) { return (c >= 0 && c < ' ') || c == '\x7f'; }, ' ');
    return result;
}

bool sameWord(std::string_view a, std::string_view b) {
    return lowerCase(a) == lowerCase(b);
}

std::vector<std::string> nearNames(std::string_view wanted, std::span<const std::string> candidates) {
    const std::string wantedLower = lowerCase(wanted);
    std::vector<std::pair<std::size_t, std::string>> found;
    for (const std::string& candidate : candidates) {
        const std::string lower = lowerCase(candidate);
        std::size_t distance = editDistance(wantedLower, lower);
        // A part of the name is a good hint even where most letters are missing.
        if (wantedLower.size() >= 3 && lower.find(wantedLower) != std::string::npos)
            distance = std::min<std::size_t>(distance, 2);
        if (distance <= std::max<std::size_t>(2, wantedLower.size() / 3))
            found.emplace_back(distance, candidate);
    }
    std::stable_sort(found.begin(), found.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<std::string> names;
    for (const auto& [distance, name] : found) {
        if (names.size() < 3 && std::find(names.begin(), names.end(), name) == names.end())
            names.push_back(name);
    }
    return names;
}

std::string suggestion(std::string_view wanted, std::span<const std::string> candidates) {
    const std::vector<std::string> names = nearNames(wanted, candidates);
    std::string text;
    for (std::size_t i = 0; i < names.size(); ++i) {
        text += i == 0 ? "; did you mean " : i + 1 == names.size() ? " or " : ", ";
        text += "\"" + names[i] + "\"";
    }
    return text.empty() ? text : text + "?";
}

bool wholeNumber(std::string_view text, double& value) {
    const std::size_t length = readNumber(text, value);
    return length > 0 && length == text.size();
}
