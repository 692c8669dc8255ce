#include "state/PresetLoader.h"

#include "base/BinaryDataReader.h"
#include "base/CustomValueBlock.h"
#include "base/NumberText.h"
#include "base/SectionFileReader.h"
#include "framework/GenericPlugin.h"
#include "state/PresetText.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace {

constexpr std::int32_t leastTextVersion = 65536; // what the version field reads as over the text "[Preset]"
constexpr std::int32_t mostValues = 1 << 20;     // a count beyond is damage
constexpr const char* invalidFormat = "Invalid file format.";

} // namespace

void PresetLoader::reportUnknownSignature(std::string_view found) {
    report("Unknown preset signature (likely intended for another Tessivane plug-in): " + std::string(found));
}

void PresetLoader::reportUnknownParameter(std::string_view name) {
    report("Unknown parameter: " + std::string(name));
}

bool PresetLoader::checkVersion(std::int32_t version, std::int32_t expectedVersion) {
    if (expectedVersion < 0 ? acceptsVersion(version) : version == expectedVersion)
        return true;
    report("Unsupported preset version: " + wholeText(version));
    return false;
}

ErrorReporter PresetLoader::load(std::istream& stream, std::int32_t expectedVersion,
                                 std::string_view expectedSignature) {
    const std::istream::pos_type start = stream.tellg();
    BinaryDataReader reader(&stream);
    const std::string found = reader.readHeader();
    clear();
    textForm = false;
    const std::string expected(expectedSignature.empty() ? signature(reader.version) : expectedSignature);
    if (found == expected) {
        if (checkVersion(reader.version, expectedVersion))
            loadBinary(reader);
    } else if (reader.version < leastTextVersion) {
        reportUnknownSignature(found);
    } else {
        stream.clear();
        stream.seekg(start);
        loadText(stream, expectedVersion, expected);
    }
    return *this;
}

void PresetLoader::loadBinary(BinaryDataReader& reader) {
    const std::int32_t stored = reader.readInt32();
    if (!reader.good() || stored < 0 || stored > mostValues) { // before anything has changed
        report(invalidFormat);
        return;
    }
    plugin.beginChange();
    beginLoad(reader.version);
    const std::int32_t count = parameterCount();
    for (std::int32_t i = 0; i < count; ++i) {
        if (i < stored)
            setParameter(i, reader.readFloat()); // 0 for what the file lacks
        else
            resetParameter(i);
    }
    CustomValues values;
    if (customValuesFromVersion >= 1 && reader.version >= customValuesFromVersion) {
        if (!readCustomValues(reader, values))
            report(invalidFormat);
    }
    if (hasCustomValues)
        plugin.customValues = std::move(values);
    finishLoad(reader.version);
    plugin.endChange();
    if (!reader.good())
        report(invalidFormat);
}

void PresetLoader::loadText(std::istream& stream, std::int32_t expectedVersion, std::string_view expected) {
    SectionFileReader reader(stream);
    if (!reader.next().empty() || reader.sectionName() != PresetText::headerSection) {
        report("Invalid preset header.");
        return;
    }
    PresetText::Header header;
    PresetText::readHeader(reader, header);
    textForm = true;
    if (header.signature != expected) {
        reportUnknownSignature(header.signature);
        return;
    }
    if (!checkVersion(header.version, expectedVersion))
        return;
    plugin.beginChange();
    beginLoad(header.version);
    CustomValues values;
    loadSections(reader, values);
    PresetText::storeMetadata(header, values);
    if (hasCustomValues)
        plugin.customValues = std::move(values);
    finishLoad(header.version);
    plugin.endChange();
    if (reader.error() != SectionFileReader::none)
        report(invalidFormat);
}

// From where the header ended: the reader stands in the next section, if there is one.
void PresetLoader::loadSections(SectionFileReader& reader, CustomValues& settings) {
    std::vector<bool> isSet(static_cast<std::size_t>(std::max(parameterCount(), 0)));
    while (!reader.sectionName().empty()) {
        const std::string section = reader.sectionName();
        if (section == PresetText::parameterSection) {
            for (std::string key = reader.next(); !key.empty(); key = reader.next()) {
                const std::int32_t index = setParameterByName(key, PresetText::valueOf(reader.value()));
                if (index >= 0 && static_cast<std::size_t>(index) < isSet.size())
                    isSet[static_cast<std::size_t>(index)] = true;
            }
        } else if (section == PresetText::settingsSection) {
            settings.clear();
            for (std::string key = reader.next(); !key.empty(); key = reader.next())
                settings.insert_or_assign(std::move(key), reader.value());
        } else {
            reader.skipSection();
        }
    }
    for (std::size_t i = 0; i < isSet.size(); ++i)
        if (!isSet[i])
            resetParameter(static_cast<std::int32_t>(i));
}
