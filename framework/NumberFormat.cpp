#include "framework/NumberFormat.h"

#include "base/NumberText.h"
#include "framework/TextHelpers.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace {

bool isDigit(char c) noexcept {
    return c >= '0' && c <= '9';
}

std::size_t readDigits(std::string_view spec, std::size_t& position) noexcept {
    std::size_t number = 0;
    for (; position < spec.size() && isDigit(spec[position]); ++position)
        number = number * 10 + static_cast<std::size_t>(spec[position] - '0');
    return number;
}

bool hasOnlyZeros(std::string_view text) noexcept {
    return text.find_first_of("123456789") == std::string_view::npos;
}

void dropSignOfZero(std::string& text) {
    if ((text.front() == '-' || text.front() == '+') && hasOnlyZeros(text))
        text.erase(0, 1);
}

// "%[+][0][width][.decimals]f" or "d"; what stands around it is kept.
std::string printNumber(double value, std::string_view spec) {
    const std::size_t start = spec.find('%');
    if (start == std::string_view::npos)
        return std::string(spec);
    std::size_t position = start + 1;
    bool plus = false;
    bool zeros = false;
    for (; position < spec.size() && (spec[position] == '+' || spec[position] == '0'); ++position)
        (spec[position] == '+' ? plus : zeros) = true;
    const std::size_t width = readDigits(spec, position);
    std::size_t decimals = 6; // printf's default
    if (position < spec.size() && spec[position] == '.')
        decimals = readDigits(spec, ++position);
    const bool whole = position < spec.size() && spec[position] == 'd';

    std::string digits =
        fixedText(whole ? std::trunc(value) : value, whole ? 0 : static_cast<int>(std::min<std::size_t>(decimals, 60)));
    if (plus && digits.front() != '-')
        digits.insert(0, 1, '+');
    dropSignOfZero(digits);
    if (digits.size() < width) {
        const bool hasSign = digits.front() == '-' || digits.front() == '+';
        digits.insert(zeros && hasSign ? 1 : 0, width - digits.size(), zeros ? '0' : ' ');
    }
    return std::string(spec.substr(0, start)).append(digits).append(spec.substr(std::min(position + 1, spec.size())));
}

} // namespace

std::string formatNumber(double value, std::string_view spec) {
    if (std::isinf(value))
        return value > 0.0 ? "INF" : "-INF";
    if (spec.empty() || spec.front() != '*')
        return printNumber(value, spec);
    std::size_t position = 1;
    const bool plus = position < spec.size() && spec[position] == '+';
    position += plus ? 1 : 0;
    const int wanted = static_cast<int>(readDigits(spec, position));
    const double decade = 10.0 - 0.5 * std::pow(10.0, -wanted); // rounds up to one digit more from here on
    int decimals = wanted;
    for (double rest = std::fabs(value); rest >= decade && decimals > 0; rest /= 10.0)
        --decimals;
    std::string text = fixedText(value, decimals);
    if (plus && text.front() != '-')
        text.insert(0, 1, '+');
    dropSignOfZero(text);
    return text;
}

std::string formatSigned(double value, int digits, bool plain) {
    if (value < -179.9)
        return "-INF";
    const std::string count = wholeText(digits);
    return formatNumber(value, plain ? "%+." + count + "f" : "*+" + count + "f");
}

std::string formatFrequency(double hz) {
    const char* spec = hz > 9999.95 ? "%.0f" : hz > 999.995 ? "%.1f" : hz > 99.9995 ? "%.2f" : "%.3f";
    return formatNumber(hz, spec);
}

std::size_t readFormattedNumber(std::string_view text, double& value) {
    const std::size_t taken = readNumber(text, value);
    if (taken > 0)
        return taken;
    const std::size_t sign = !text.empty() && (text.front() == '-' || text.front() == '+') ? 1 : 0;
    const std::size_t end = sign + 3;
    if (!compareText(text.substr(sign, 3), "INF") || (text.size() > end && text[end] != ' '))
        return 0;
    value = text.front() == '-' ? -HUGE_VAL : HUGE_VAL;
    return end;
}
