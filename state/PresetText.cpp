#include "state/PresetText.h"

#include "base/NumberText.h"
#include "base/SectionFileReader.h"
#include "base/SectionFileWriter.h"

namespace PresetText {

namespace {

std::int32_t versionOf(std::string_view text) {
    std::int64_t version = 0;
    const bool whole = readWhole(text, version) == text.size() && version >= INT32_MIN && version <= INT32_MAX;
    return whole ? static_cast<std::int32_t>(version) : 0;
}

void writeFilled(SectionFileWriter& writer, std::string_view key, const CustomValues& values, const char* valueKey) {
    const auto found = values.find(valueKey);
    if (found != values.end() && !found->second.empty())
        writer.writeText(key, found->second);
}

} // namespace

void readHeader(SectionFileReader& reader, Header& header) {
    for (std::string key = reader.next(); !key.empty(); key = reader.next()) {
        if (key == "Signature")
            header.signature = reader.value();
        else if (key == "Version")
            header.version = versionOf(reader.value());
        else if (key == "Author")
            header.author = reader.value();
        else if (key == "Description")
            header.description = reader.value();
        else if (key == "Tags")
            header.tags = reader.value();
    }
}

void storeMetadata(const Header& header, CustomValues& values) {
    if (!header.author.empty())
        values[authorKey] = header.author;
    if (!header.description.empty())
        values[descriptionKey] = header.description;
    if (!header.tags.empty())
        values[tagsKey] = header.tags;
}

void writeHeader(SectionFileWriter& writer, std::string_view signature, std::int32_t version,
                 const CustomValues& values) {
    writer.beginSection(headerSection);
    writer.writeText("Signature", signature);
    writer.writeText("Version", wholeText(version));
    writeFilled(writer, "Author", values, authorKey);
    writeFilled(writer, "Description", values, descriptionKey);
    writeFilled(writer, "Tags", values, tagsKey);
}

void writeSettings(SectionFileWriter& writer, const CustomValues& values) {
    bool begun = false;
    for (const auto& [key, value] : values) {
        if (key == authorKey || key == descriptionKey || key == tagsKey)
            continue;
        if (!begun)
            writer.beginSection(settingsSection);
        begun = true;
        writer.writeText(key, value);
    }
}

float valueOf(std::string_view text) {
    double value = 0.0;
    return readNumber(text, value) == text.size() && !text.empty() ? static_cast<float>(value) : 0.0f;
}

} // namespace PresetText
