#include "state/PresetParameterCollection.h"

#include "base/BinaryDataReader.h"
#include "base/BinaryDataWriter.h"
#include "base/CustomValueBlock.h"
#include "base/SectionFileReader.h"
#include "base/SectionFileWriter.h"
#include "framework/AbstractPluginParameter.h"
#include "framework/GenericPlugin.h"
#include "platform/Files.h"
#include "state/CollectionPresetLoader.h"
#include "state/PresetFile.h"
#include "state/PresetText.h"

#include <algorithm>
#include <sstream>
#include <vector>

namespace {

constexpr std::string_view activeCount = "Num Active ";
constexpr std::size_t headerBytes = 12;

bool isSectionLine(std::string_view line) noexcept {
    const std::size_t first = line.find_first_not_of(" \t");
    return first != std::string_view::npos && line[first] == '[';
}

std::string_view keyOf(std::string_view line) noexcept {
    const std::string_view key = line.substr(0, line.find('='));
    const std::size_t first = std::min(key.find_first_not_of(" \t"), key.size());
    return key.substr(first, key.find_last_not_of(" \t") + 1 - first);
}

// Takes the line at the head of the text, with its end.
std::string_view takeLine(std::string_view& text) noexcept {
    std::size_t end = text.find_first_of("\r\n");
    if (end != std::string_view::npos && text[end] == '\r' && end + 1 < text.size() && text[end + 1] == '\n')
        ++end;
    const std::string_view line = text.substr(0, end == std::string_view::npos ? text.size() : end + 1);
    text.remove_prefix(line.size());
    return line;
}

} // namespace

PresetParameterCollection::PresetParameterCollection(GenericPlugin& owner, const ParameterCollection& list,
                                                     std::string_view wanted)
    : plugin(owner), parameters(list), ownSignature(wanted.empty() ? owner.info.presetSignature : wanted) {
    for (std::int32_t i = 0; i < count(); ++i)
        indices.emplace(at(i).longName(), i);
    for (const auto& [alias, id] : plugin.aliases())
        if (const std::int32_t index = indexOf(plugin.parameter(id)); index >= 0)
            indices.emplace(alias, index);
}

bool PresetParameterCollection::isWholeList() const noexcept {
    return &parameters == &plugin.parameters();
}

bool PresetParameterCollection::savesText() const noexcept {
    return plugin.info.has(GenericPluginInfo::textPresets);
}

// Names

std::int32_t PresetParameterCollection::indexOf(std::string_view name) const {
    const auto found = indices.find(name);
    return found != indices.end() ? found->second : -1;
}

std::int32_t PresetParameterCollection::indexOf(const AbstractPluginParameter& parameter) const noexcept {
    const auto found = std::find(parameters.begin(), parameters.end(), &parameter);
    return found != parameters.end() ? static_cast<std::int32_t>(found - parameters.begin()) : -1;
}

std::string PresetParameterCollection::namePrefix() const {
    if (count() == 0 || at(0).groupName().empty())
        return {};
    const std::string prefix = std::string(at(0).groupName()) + ' ';
    const std::string counted = std::string(activeCount) + prefix;
    const bool common =
        std::all_of(parameters.begin(), parameters.end(), [&](const AbstractPluginParameter* parameter) {
            const std::string name = parameter->longName();
            return name.starts_with(prefix) || name.starts_with(counted);
        });
    return common ? prefix : std::string();
}

std::string PresetParameterCollection::cutName(const std::string& name, std::string_view prefix) {
    if (prefix.empty())
        return name;
    if (name.starts_with(prefix))
        return name.substr(prefix.size());
    return std::string(activeCount) + name.substr(activeCount.size() + prefix.size());
}

std::int32_t PresetParameterCollection::indexOfCutName(std::string_view name, std::string_view prefix) const {
    const std::int32_t index = indexOf(std::string(prefix).append(name));
    if (index >= 0 || !name.starts_with(activeCount))
        return index;
    return indexOf(std::string(activeCount).append(prefix).append(name.substr(activeCount.size())));
}

// Files

ErrorReporter PresetParameterCollection::load(const std::string& path, std::int32_t version) const {
    CollectionPresetLoader loader(plugin, *this);
    loader.customValuesFromVersion = customValuesFromVersion;
    return loader.load(*openPresetFile(path), version);
}

bool PresetParameterCollection::save(const std::string& path, std::int32_t version, std::int32_t firstIndex,
                                     std::int32_t savedCount) const {
    if (firstIndex < 0 || !fileExists(path))
        return replaceFile(path, bytesToSave(version));
    const std::int32_t first = std::min(firstIndex, count());
    const std::int32_t end = std::min(first + std::clamp(savedCount, 0, count()), count());
    std::string bytes;
    return readFile(path, mostPresetBytes, bytes) &&
           (savesText() ? patchText(bytes, version, first, end) : patchBinary(bytes, version, first, end)) &&
           replaceFile(path, bytes);
}

std::string PresetParameterCollection::bytesToSave(std::int32_t version) const {
    return savesText() ? textBytes(version) : binaryBytes(version);
}

std::string PresetParameterCollection::binaryBytes(std::int32_t version) const {
    std::ostringstream stream;
    BinaryDataWriter writer(&stream);
    writer.writeHeader(ownSignature, version);
    writer.writeInt32(count());
    for (const AbstractPluginParameter* parameter : parameters)
        writer.writeFloat(parameter->value());
    if (customValuesFromVersion >= 1 && version >= customValuesFromVersion && isWholeList())
        writeCustomValues(writer, plugin.customValues);
    return stream.str();
}

std::string PresetParameterCollection::textBytes(std::int32_t version) const {
    std::ostringstream stream;
    SectionFileWriter writer(stream);
    PresetText::writeHeader(writer, ownSignature, version, plugin.customValues);
    writer.beginSection(PresetText::parameterSection);
    const std::string prefix = namePrefix();
    for (const AbstractPluginParameter* parameter : parameters)
        writer.writeValue(cutName(parameter->longName(), prefix), static_cast<double>(parameter->value()));
    if (isWholeList())
        PresetText::writeSettings(writer, plugin.customValues);
    return stream.str();
}

bool PresetParameterCollection::patchBinary(std::string& bytes, std::int32_t version, std::int32_t first,
                                            std::int32_t end) const {
    std::istringstream in(bytes);
    BinaryDataReader reader(&in);
    // A file that ends before its last value could not be completed with values that nobody gave.
    if (reader.readHeader() != ownSignature || reader.version != version ||
        bytes.size() < headerBytes + static_cast<std::size_t>(count()) * sizeof(float))
        return false;
    std::ostringstream out(bytes, std::ios::in | std::ios::out | std::ios::binary);
    BinaryDataWriter writer(&out);
    writer.writeHeader(ownSignature, version);
    writer.writeInt32(count());
    out.seekp(static_cast<std::streamoff>(headerBytes + static_cast<std::size_t>(first) * sizeof(float)));
    for (std::int32_t i = first; i < end; ++i)
        writer.writeFloat(at(i).value());
    bytes = out.str();
    return writer.good();
}

bool PresetParameterCollection::patchText(std::string& bytes, std::int32_t version, std::int32_t first,
                                          std::int32_t end) const {
    {
        std::istringstream in(bytes);
        SectionFileReader reader(in);
        PresetText::Header header;
        if (!reader.next().empty() || reader.sectionName() != PresetText::headerSection)
            return false;
        PresetText::readHeader(reader, header);
        while (!reader.sectionName().empty())
            reader.skipSection();
        if (header.signature != ownSignature || header.version != version || reader.error() != SectionFileReader::none)
            return false;
    }
    const std::string prefix = namePrefix();
    std::map<std::string, std::string, std::less<>> missing; // lines by key, until their place is found
    for (std::int32_t i = first; i < end; ++i) {
        const std::string name = cutName(at(i).longName(), prefix);
        missing.emplace(name, name + '=' + SectionFileWriter::numberText(static_cast<double>(at(i).value())) + '\n');
    }
    std::string result;
    bool inParameters = false;
    const auto addMissing = [&] {
        // In front of the empty line that parts the sections.
        std::string gap;
        while (result.ends_with("\n\n"))
            gap += '\n', result.pop_back();
        for (const auto& [name, line] : missing)
            result += line;
        missing.clear();
        result += gap;
    };
    for (std::string_view rest = bytes; !rest.empty();) {
        const std::string_view line = takeLine(rest);
        if (isSectionLine(line)) {
            if (inParameters)
                addMissing();
            const std::size_t open = line.find('[');
            inParameters = keyOf(line.substr(open + 1, line.find(']') - open - 1)) == PresetText::parameterSection;
        } else if (inParameters) {
            if (const auto found = missing.find(keyOf(line)); found != missing.end()) {
                result += found->second;
                missing.erase(found);
                continue;
            }
        }
        result += line;
    }
    if (!result.ends_with('\n'))
        result += '\n';
    if (!inParameters && !missing.empty())
        result.append("\n[").append(PresetText::parameterSection).append("]\n");
    addMissing();
    bytes = std::move(result);
    return true;
}
