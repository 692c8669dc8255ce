#include "state/PresetMetadataWriter.h"

#include "base/BinaryDataReader.h"
#include "base/BinaryDataWriter.h"
#include "base/SectionFileReader.h"
#include "base/SectionFileWriter.h"
#include "platform/Files.h"
#include "state/PresetFile.h"
#include "state/PresetText.h"

#include <algorithm>
#include <sstream>

namespace {

constexpr std::int32_t mostValues = 10000;

CustomValues valuesOf(const Preset& preset, CustomValues values) {
    std::string tags;
    for (const std::string& tag : preset.tags)
        tags.append(tags.empty() ? "" : ",").append(tag);
    for (const auto& [key, text] : {std::pair<const char*, const std::string&>{PresetText::authorKey, preset.author},
                                    {PresetText::descriptionKey, preset.description},
                                    {PresetText::tagsKey, tags}}) {
        if (text.empty())
            values.erase(key);
        else
            values[key] = text;
    }
    return values;
}

// Header and values as they are, then the block with the new texts.
bool rewriteBinary(std::string& bytes, const Preset& preset, std::int32_t count, std::int32_t customValuesFromVersion) {
    std::istringstream in(bytes);
    BinaryDataReader reader(&in);
    reader.readHeader();
    const std::size_t head = 12 + static_cast<std::size_t>(count) * 4;
    if (customValuesFromVersion < 1 || reader.version < customValuesFromVersion || bytes.size() < head)
        return false;
    in.seekg(static_cast<std::streamoff>(head));
    CustomValues former;
    if (bytes.size() > head && !readCustomValues(reader, former))
        return false;
    std::ostringstream out;
    out << bytes.substr(0, head);
    BinaryDataWriter writer(&out);
    writeCustomValues(writer, valuesOf(preset, std::move(former)));
    bytes = out.str();
    return true;
}

bool rewriteText(std::string& bytes, const Preset& preset, std::span<const std::string_view> signatures) {
    std::istringstream in(bytes);
    SectionFileReader reader(in);
    PresetText::Header header;
    if (!reader.next().empty() || reader.sectionName() != PresetText::headerSection)
        return false;
    PresetText::readHeader(reader, header);
    if (std::find(signatures.begin(), signatures.end(), header.signature) == signatures.end())
        return false;
    std::ostringstream out;
    SectionFileWriter writer(out);
    PresetText::writeHeader(writer, header.signature, header.version, valuesOf(preset, {}));
    while (!reader.sectionName().empty()) {
        writer.beginSection(reader.sectionName());
        for (std::string key = reader.next(); !key.empty(); key = reader.next())
            writer.writeText(key, reader.value());
    }
    bytes = out.str();
    return reader.error() == SectionFileReader::none;
}

} // namespace

bool writePresetMetadata(const Preset& preset, std::span<const std::string_view> signatures,
                         std::int32_t customValuesFromVersion) {
    std::string bytes;
    if (!readFile(preset.path, mostPresetBytes, bytes))
        return false;
    std::istringstream in(bytes);
    BinaryDataReader reader(&in);
    const std::string signature = reader.readHeader();
    const std::int32_t count = reader.readInt32();
    const bool isBinary = std::find(signatures.begin(), signatures.end(), signature) != signatures.end();
    if (isBinary && (!reader.good() || count < 0 || count > mostValues))
        return false;
    return (isBinary ? rewriteBinary(bytes, preset, count, customValuesFromVersion)
                     : rewriteText(bytes, preset, signatures)) &&
           replaceFile(preset.path, bytes);
}
