#include "base/SectionFileReader.h"

namespace {

bool isBlank(char c) noexcept {
    return c == ' ' || c == '\t';
}

std::string_view withoutLeadingBlanks(std::string_view text) noexcept {
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    return text;
}

std::string_view withoutTrailingBlanks(std::string_view text) noexcept {
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

} // namespace

bool SectionFileReader::readLine(std::string& line) {
    std::streambuf& bytes = *input.rdbuf();
    constexpr auto end = std::istream::traits_type::eof();
    for (auto c = bytes.sbumpc(); c != '\n'; c = bytes.sbumpc()) {
        if (c == end) {
            input.setstate(std::ios::eofbit);
            return true;
        }
        if (c == '\r') {
            if (bytes.sgetc() == '\n')
                bytes.sbumpc();
            return true;
        }
        if (line.size() == longestLine)
            return false;
        line.push_back(static_cast<char>(c));
    }
    return true;
}

std::string SectionFileReader::fail(Error wrong) {
    code = wrong;
    section.clear();
    lastValue.clear();
    return {};
}

std::string SectionFileReader::next() {
    while (code == none && input.good()) {
        std::string text;
        if (!readLine(text))
            return fail(noEqualsSign);
        const std::string_view line = withoutLeadingBlanks(text);
        if (line.empty())
            continue;
        if (line.front() == '[')
            return readSection(line);
        const std::size_t equals = line.find('=');
        const std::string_view key = withoutTrailingBlanks(line.substr(0, equals));
        if (equals == std::string_view::npos)
            return fail(noEqualsSign);
        if (key.empty())
            return fail(emptyKey);
        if (!decode(withoutLeadingBlanks(line.substr(equals + 1))))
            return fail(textBehind);
        return std::string(key);
    }
    section.clear();
    lastValue.clear();
    return {};
}

std::string SectionFileReader::readSection(std::string_view line) {
    const std::size_t close = line.find(']');
    if (close == std::string_view::npos)
        return fail(openSection);
    const std::string_view name = withoutTrailingBlanks(withoutLeadingBlanks(line.substr(1, close - 1)));
    if (name.empty())
        return fail(emptySection);
    if (!withoutLeadingBlanks(line.substr(close + 1)).empty())
        return fail(textBehind);
    section = name;
    lastValue.clear();
    return {};
}

// A quoted value ends at its quote, a bare one at the end of the line, less its blanks there.
bool SectionFileReader::decode(std::string_view text) {
    lastValue.clear();
    const bool quoted = !text.empty() && text.front() == '"';
    std::size_t at = quoted ? 1 : 0;
    for (; at < text.size(); ++at) {
        if (quoted && text[at] == '"')
            return withoutLeadingBlanks(text.substr(at + 1)).empty();
        char c = text[at];
        const char escaped = c == '\\' && at + 1 < text.size() ? text[at + 1] : '\0';
        if (escaped == '"' || escaped == '\\' || escaped == 'n' || escaped == 'r') {
            c = escaped == 'n' ? '\n' : escaped == 'r' ? '\r' : escaped;
            ++at;
        }
        lastValue.push_back(c);
    }
    if (!quoted)
        lastValue.resize(withoutTrailingBlanks(lastValue).size());
    return true;
}

void SectionFileReader::skipSection() {
    while (!next().empty()) {
    }
}
