// The mirror of SectionFileReader.
// Threads: the one that made it.
#pragma once

#include <ostream>
#include <string>
#include <string_view>

class SectionFileWriter {
public:
    explicit SectionFileWriter(std::ostream& target) noexcept : output(target) {}
    SectionFileWriter(const SectionFileWriter&) = delete;
    SectionFileWriter& operator=(const SectionFileWriter&) = delete;

    void beginSection(std::string_view name); // an empty line parts it from what stands above
    void writeValue(std::string_view key, double number);
    void writeText(std::string_view key, std::string_view text);

    static std::string numberText(double number); // 15 significant digits
    static std::string escaped(std::string_view text);

private:
    void writeLine(std::string_view key, std::string_view value);

    std::ostream& output; // not owned
    bool wroteSomething = false;
};
