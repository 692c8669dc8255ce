// Reads texts of sections with lines "key=value".
// Threads: the one that made it.
#pragma once

#include <cstdint>
#include <istream>
#include <string>
#include <string_view>

class SectionFileReader {
public:
    enum Error : std::int32_t {
        none,
        emptyKey,
        emptySection,
        noEqualsSign, // also a line of more than longestLine bytes
        openSection,  // no "]"
        textBehind,   // a section header or a quoted value
    };

    static constexpr std::size_t longestLine = 1 << 20;

    explicit SectionFileReader(std::istream& source) noexcept : input(source) {}
    SectionFileReader(const SectionFileReader&) = delete;
    SectionFileReader& operator=(const SectionFileReader&) = delete;

    // The next key. Empty: a section has begun (sectionName is its name), or the text has ended (sectionName is
    // empty), or a line is wrong (error is set, and stays).
    std::string next();
    void skipSection();

    const std::string& value() const noexcept { return lastValue; } // of the key that next gave
    const std::string& sectionName() const noexcept { return section; }
    std::int32_t error() const noexcept { return code; }

private:
    bool readLine(std::string& line); // false: longer than any line of ours
    std::string fail(Error wrong);
    std::string readSection(std::string_view line);
    bool decode(std::string_view text);

    std::istream& input; // not owned
    std::string section;
    std::string lastValue;
    std::int32_t code = none;
};
