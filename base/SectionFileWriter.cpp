#include "base/SectionFileWriter.h"

#include "base/NumberText.h"

void SectionFileWriter::beginSection(std::string_view name) {
    if (wroteSomething)
        output << '\n';
    output << '[' << name << "]\n";
    wroteSomething = true;
}

void SectionFileWriter::writeValue(std::string_view key, double number) {
    writeLine(key, numberText(number));
}

void SectionFileWriter::writeText(std::string_view key, std::string_view text) {
    writeLine(key, escaped(text));
}

void SectionFileWriter::writeLine(std::string_view key, std::string_view value) {
    output << key << '=' << value << '\n';
    wroteSomething = true;
}

std::string SectionFileWriter::numberText(double number) {
    return generalText(number, 15);
}

std::string SectionFileWriter::escaped(std::string_view text) {
    std::string result;
    bool hasBlank = false;
    for (const char c : text) {
        hasBlank = hasBlank || c == ' ' || c == '\t';
        switch (c) {
        case '\n':
            result += "\\n";
            break;
        case '\r':
            result += "\\r";
            break;
        case '"':
        case '\\':
            result += '\\';
            [[fallthrough]];
        default:
            result += c;
        }
    }
    return hasBlank ? '"' + result + '"' : result;
}
