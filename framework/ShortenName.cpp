#include "framework/ShortenName.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

using Replacement = std::pair<std::string_view, std::string_view>;

constexpr std::array<Replacement, 2> levels{{{"High ", "Hi"}, {"Low ", "Lo"}}};
constexpr std::array<Replacement, 7> filters{{{"HiPass", "HP"},
                                              {"HiShelf", "HS"},
                                              {"HiCut", "HC"},
                                              {"LoPass", "LP"},
                                              {"LoShelf", "LS"},
                                              {"LoCut", "LC"},
                                              {"Band Pass", "BP"}}};
constexpr std::array<Replacement, 10> words{{{"Filter", "Fil"},
                                             {"Frequency", "Freq"},
                                             {"Delay", "Del"},
                                             {"Reverb", "Rev"},
                                             {"Effect", "FX"},
                                             {"Threshold", "Thresh"},
                                             {"Attack", "Att"},
                                             {"Release", "Rel"},
                                             {"Decay", "Dcy"},
                                             {"Crossover", "Cross"}}};

bool isDigit(char c) noexcept {
    return c >= '0' && c <= '9';
}

bool isUpper(char c) noexcept {
    return c >= 'A' && c <= 'Z';
}

bool isLetter(char c) noexcept {
    return isUpper(c) || (c >= 'a' && c <= 'z');
}

void replaceAll(std::string& text, std::string_view from, std::string_view to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
}

template <std::size_t count>
void replaceAll(std::string& text, const std::array<Replacement, count>& replacements) {
    for (const auto& [from, to] : replacements)
        replaceAll(text, from, to);
}

// "Band12" becomes "B12", from the last number to the first, until the text fits.
bool pullNumbersToCapitals(std::string& text, std::size_t maxLength) {
    for (std::size_t end = text.size(); end > 0;) {
        if (!isDigit(text[end - 1])) {
            --end;
            continue;
        }
        std::size_t run = end - 1;
        while (run > 0 && isDigit(text[run - 1]))
            --run;
        std::size_t capital = run;
        while (capital > 0 && !isUpper(text[capital - 1]) && !isDigit(text[capital - 1]))
            --capital;
        if (capital > 0 && isUpper(text[capital - 1])) {
            for (std::size_t i = run; i > capital; --i) {
                if (isLetter(text[i - 1]))
                    text.erase(i - 1, 1);
            }
            if (text.size() <= maxLength)
                return true;
        }
        end = capital;
    }
    return false;
}

// "Stereo Placement" becomes "SPlacement": of each word but the last what begins it. Gives where the last word starts.
std::size_t gatherCapitals(std::string& text) {
    const std::size_t lastBlank = text.rfind(' ');
    if (lastBlank == std::string::npos)
        return 0;
    std::string gathered;
    for (std::size_t i = 0; i < lastBlank; ++i) {
        const bool starts = text[i] != ' ' && (i == 0 || text[i - 1] == ' ');
        if (!starts)
            continue;
        gathered += text[i];
        while (i + 1 < lastBlank && (isDigit(text[i + 1]) || isUpper(text[i + 1])))
            gathered += text[++i];
    }
    const std::size_t start = gathered.size();
    text = gathered.append(text, lastBlank + 1);
    return start;
}

} // namespace

std::string shortenName(std::string_view text, std::size_t maxLength) {
    std::string result(text);
    const auto fits = [&result, maxLength] { return result.size() <= maxLength; };
    if (maxLength == 0 || fits())
        return result;
    replaceAll(result, levels);
    if (fits())
        return result;
    replaceAll(result, filters);
    if (fits())
        return result;
    for (const auto& [from, to] : words) {
        replaceAll(result, from, to);
        if (fits())
            return result;
    }
    for (char digit = '0'; digit <= '8'; ++digit) { // a 9 keeps its blank, as it always has
        const std::array<char, 2> separated{' ', digit};
        replaceAll(result, {separated.data(), 2}, {&digit, 1});
    }
    if (fits() || pullNumbersToCapitals(result, maxLength))
        return result;
    const std::string withBlanks = result;
    replaceAll(result, " ", "");
    if (fits())
        return result;
    result = withBlanks;
    std::size_t kept = gatherCapitals(result);
    if (fits())
        return result;
    if (kept > 0 && isDigit(result[1]) && !isDigit(result[0])) {
        result.erase(0, 1);
        --kept;
    }
    if (fits())
        return result;
    std::string dropped = result.substr(0, kept);
    for (std::size_t i = kept; i < result.size() && dropped.size() < maxLength; ++i) {
        if (std::string_view("eyuioa()-").find(result[i]) == std::string_view::npos)
            dropped += result[i];
    }
    dropped.resize(std::min(dropped.size(), maxLength));
    return dropped;
}
