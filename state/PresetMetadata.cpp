#include "state/PresetMetadata.h"

#include "base/BinaryDataReader.h"
#include "base/SectionFileReader.h"
#include "base/Utf8.h"
#include "framework/TextHelpers.h"
#include "platform/Paths.h"
#include "state/PresetFile.h"
#include "state/PresetText.h"

#include <algorithm>

namespace {

void takeValues(Preset& preset, const CustomValues& values) {
    const auto textOf = [&](const char* key) {
        const auto found = values.find(key);
        return found != values.end() ? found->second : std::string();
    };
    preset.author = textOf(PresetText::authorKey);
    preset.description = textOf(PresetText::descriptionKey);
    preset.tags.clear();
    std::vector<std::string> parts;
    splitList(textOf(PresetText::tagsKey), parts);
    for (const std::string& part : parts)
        if (const std::string_view tag = withoutBlanks(part); !tag.empty())
            preset.tags.emplace_back(tag);
}

} // namespace

bool readPresetMetadata(Preset& preset, std::span<const std::string_view> signatures,
                        std::int32_t customValuesFromVersion) {
    const auto isOurs = [&](std::string_view found) {
        return std::find(signatures.begin(), signatures.end(), found) != signatures.end();
    };
    preset.name = validUtf8(stripExtension(fileNameOf(preset.path)));
    const std::unique_ptr<std::istream> stream = openPresetFile(preset.path);
    BinaryDataReader reader(stream.get());
    const std::string signature = reader.readHeader();
    CustomValues values;
    if (isOurs(signature)) {
        const std::int32_t count = reader.readInt32();
        if (!reader.good() || count < 0)
            return false;
        if (customValuesFromVersion >= 1 && reader.version >= customValuesFromVersion) {
            reader.skip(std::int64_t{count} * 4);
            if (!readCustomValues(reader, values))
                return false;
        }
        takeValues(preset, values);
        return true;
    }
    stream->clear();
    stream->seekg(0);
    SectionFileReader text(*stream);
    PresetText::Header header;
    if (!text.next().empty() || text.sectionName() != PresetText::headerSection)
        return false;
    PresetText::readHeader(text, header);
    PresetText::storeMetadata(header, values);
    takeValues(preset, values);
    return text.error() == SectionFileReader::none && isOurs(header.signature);
}
