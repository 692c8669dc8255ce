#include "platform/SettingsText.h"

#include <charconv>
#include <optional>

namespace {

constexpr std::string_view firstLine = "# Settings, whole only with the last line";
constexpr std::string_view lastLine = "# End of settings";
constexpr std::string_view dwordKind = "dword:";
constexpr std::string_view textKind = "text:";
constexpr std::string_view binaryKind = "binary:";
constexpr char digits[] = "0123456789abcdef";

bool isControl(char c) noexcept {
    return static_cast<unsigned char>(c) < 0x20;
}

std::string escaped(std::string_view text) {
    std::string result = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            (result += '\\') += c;
        } else if (isControl(c)) { // a line end above all
            const auto code = static_cast<unsigned char>(c);
            ((result += "\\x") += digits[code >> 4]) += digits[code & 15];
        } else {
            result += c;
        }
    }
    return result += '"';
}

std::optional<std::uint8_t> byteOf(std::string_view text) noexcept {
    std::uint8_t byte = 0;
    if (text.size() < 2)
        return std::nullopt;
    const auto [end, error] = std::from_chars(text.data(), text.data() + 2, byte, 16);
    if (error != std::errc() || end != text.data() + 2)
        return std::nullopt;
    return byte;
}

std::optional<SettingValue> unescaped(std::string_view text) {
    if (text.size() < 2 || text.front() != '"')
        return std::nullopt;
    std::string result;
    for (std::size_t i = 1; i < text.size(); ++i) {
        if (text[i] == '"')
            return i + 1 == text.size() ? std::optional<SettingValue>(result) : std::nullopt;
        if (text[i] != '\\') {
            result += text[i];
            continue;
        }
        if (++i == text.size())
            return std::nullopt;
        if (text[i] != 'x') {
            result += text[i];
            continue;
        }
        const auto byte = byteOf(text.substr(i + 1));
        if (!byte)
            return std::nullopt;
        result += static_cast<char>(*byte);
        i += 2;
    }
    return std::nullopt; // no closing quote
}

std::optional<SettingValue> bytesOf(std::string_view text) {
    SettingBytes bytes;
    for (; !text.empty(); text.remove_prefix(2)) {
        const auto byte = byteOf(text);
        if (!byte)
            return std::nullopt;
        bytes.push_back(*byte);
    }
    return bytes;
}

std::optional<SettingValue> wholeOf(std::string_view text) noexcept {
    std::int32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return number;
}

std::optional<SettingValue> valueOf(std::string_view text) {
    if (text.starts_with(dwordKind))
        return wholeOf(text.substr(dwordKind.size()));
    if (text.starts_with(textKind))
        return unescaped(text.substr(textKind.size()));
    if (text.starts_with(binaryKind))
        return bytesOf(text.substr(binaryKind.size()));
    return std::nullopt;
}

void append(std::string& text, std::int32_t value) {
    text.append(dwordKind).append(std::to_string(value));
}

void append(std::string& text, const std::string& value) {
    text.append(textKind).append(escaped(value));
}

void append(std::string& text, const SettingBytes& value) {
    text.append(binaryKind);
    for (const std::uint8_t byte : value)
        (text += digits[byte >> 4]) += digits[byte & 15];
}

} // namespace

bool isSettingName(std::string_view name) noexcept {
    if (name.empty() || name.front() == '#')
        return false;
    for (const char c : name)
        if (c == '=' || isControl(c))
            return false;
    return true;
}

std::string settingsToText(const SettingValues& values) {
    std::string text = std::string(firstLine) + '\n';
    for (const auto& [name, value] : values) {
        if (!isSettingName(name))
            continue;
        text.append(name) += '=';
        std::visit([&text](const auto& typed) { append(text, typed); }, value);
        text += '\n';
    }
    return text.append(lastLine) += '\n';
}

SettingValues settingsFromText(std::string_view text) {
    SettingValues values;
    const bool endPromised = text.starts_with(firstLine);
    bool ended = false;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        if (end == std::string_view::npos)
            break; // cut inside a line: its value may be a part
        std::string_view line = text.substr(0, end);
        text.remove_prefix(end + 1);
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        ended = ended || line == lastLine;
        const std::size_t equals = line.find('=');
        if (equals == std::string_view::npos || !isSettingName(line.substr(0, equals)))
            continue;
        if (auto value = valueOf(line.substr(equals + 1)))
            values.insert_or_assign(std::string(line.substr(0, equals)), *std::move(value));
    }
    return endPromised && !ended ? SettingValues{} : values;
}
