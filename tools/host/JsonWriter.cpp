#include "tools/host/JsonWriter.h"

#include "base/NumberText.h"

#include <cmath>
#include <cstddef>

namespace {

// Length of the valid UTF-8 sequence at the start, 0: there is none. Overlong forms and surrogates are none.
std::size_t sequenceLength(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(0);
    const std::size_t length = lead < 0x80                    ? 1
                               : lead >= 0xc2 && lead <= 0xdf ? 2
                               : lead >= 0xe0 && lead <= 0xef ? 3
                               : lead >= 0xf0 && lead <= 0xf4 ? 4
                                                              : 0;
    if (length == 0 || length > text.size())
        return 0;
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xc0) != 0x80)
            return 0;
    }
    const bool wrong = (lead == 0xe0 && byte(1) < 0xa0) || (lead == 0xed && byte(1) > 0x9f) ||
                       (lead == 0xf0 && byte(1) < 0x90) || (lead == 0xf4 && byte(1) > 0x8f);
    return wrong ? 0 : length;
}

} // namespace

void JsonWriter::begin(std::string_view key) {
    if (needsComma)
        written += ',';
    if (!closing.empty()) {
        written += '\n';
        written.append(2 * closing.size(), ' ');
    }
    if (!key.empty()) {
        quote(key);
        written += ": ";
    }
    needsComma = true;
}

void JsonWriter::open(std::string_view key, char bracket) {
    begin(key);
    written += bracket;
    closing += bracket == '{' ? '}' : ']';
    needsComma = false;
}

void JsonWriter::close() {
    const char bracket = closing.back();
    closing.pop_back();
    if (needsComma) {
        written += '\n';
        written.append(2 * closing.size(), ' ');
    }
    written += bracket;
    needsComma = true;
    if (closing.empty())
        written += '\n';
}

void JsonWriter::quote(std::string_view value) {
    constexpr std::string_view hex = "0123456789abcdef";
    written += '"';
    while (!value.empty()) {
        const std::size_t length = sequenceLength(value);
        const char c = value.front();
        if (length == 0) {
            written += "\xef\xbf\xbd"; // the replacement character
        } else if (c == '"' || c == '\\') {
            written += '\\';
            written += c;
        } else if (static_cast<unsigned char>(c) < 0x20) {
            written += "\\u00";
            written += hex[static_cast<unsigned char>(c) >> 4];
            written += hex[c & 15];
        } else {
            written += value.substr(0, length);
        }
        value.remove_prefix(length == 0 ? 1 : length);
    }
    written += '"';
}

void JsonWriter::text(std::string_view key, std::string_view value) {
    begin(key);
    quote(value);
}

void JsonWriter::number(std::string_view key, double value) {
    begin(key);
    written += std::isfinite(value) ? shortestText(value) : "null";
}

void JsonWriter::whole(std::string_view key, std::int64_t value) {
    begin(key);
    written += wholeText(value);
}

void JsonWriter::truth(std::string_view key, bool value) {
    begin(key);
    written += value ? "true" : "false";
}

void JsonWriter::texts(std::string_view key, const std::vector<std::string>& values) {
    openList(key);
    for (const std::string& value : values)
        text({}, value);
    close();
}
