// The words of a preset in text form, and its header.
// Threads: any.
#pragma once

#include "base/CustomValueBlock.h"

#include <cstdint>
#include <string>
#include <string_view>

class SectionFileReader;
class SectionFileWriter;

namespace PresetText {

inline constexpr std::string_view headerSection = "Preset";
inline constexpr std::string_view parameterSection = "Parameters";
inline constexpr std::string_view settingsSection = "Settings";

// Custom values that stand in the header.
inline constexpr const char* nameKey = "NAME";
inline constexpr const char* authorKey = "AUTHOR";
inline constexpr const char* descriptionKey = "DESCRIPTION";
inline constexpr const char* tagsKey = "TAGS"; // one text with commas between them

struct Header {
    std::string signature;
    std::int32_t version = 0;
    std::string author;
    std::string description;
    std::string tags;
};

// Up to where the next section begins or the text ends.
void readHeader(SectionFileReader& reader, Header& header);
void storeMetadata(const Header& header, CustomValues& values); // each that is not empty

void writeHeader(SectionFileWriter& writer, std::string_view signature, std::int32_t version,
                 const CustomValues& values);
void writeSettings(SectionFileWriter& writer, const CustomValues& values); // nothing when there is none

float valueOf(std::string_view text); // 0 for what is no number

} // namespace PresetText
