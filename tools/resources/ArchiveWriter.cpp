#include "tools/resources/ArchiveWriter.h"

#include "base/BinaryDataWriter.h"
#include "tools/resources/PresetLayout.h"
#include "tools/resources/PresetSource.h"

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <string_view>
#include <zlib.h>

namespace {

namespace fs = std::filesystem;

constexpr std::size_t longestName = 67;

std::string readAll(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::string record(std::string_view name, std::size_t storedSize, std::int32_t fullSize) {
    if (name.size() > longestName)
        throw PresetSourceError(std::string(name) + ": the name is too long");
    std::ostringstream stream;
    stream.put(static_cast<char>(name.size()));
    stream << name << std::string(longestName - name.size(), '\0');
    BinaryDataWriter writer(&stream);
    writer.writeInt32(static_cast<std::int32_t>(storedSize));
    writer.writeInt32(fullSize);
    return stream.str();
}

std::string deflated(const std::string& bytes) {
    uLongf size = compressBound(static_cast<uLong>(bytes.size()));
    std::string result(size, '\0');
    if (compress2(reinterpret_cast<Bytef*>(result.data()), &size, reinterpret_cast<const Bytef*>(bytes.data()),
                  static_cast<uLong>(bytes.size()), Z_BEST_COMPRESSION) != Z_OK)
        throw PresetSourceError("deflating failed");
    result.resize(size);
    return result;
}

std::string fileEntry(std::string_view name, const std::string& bytes) {
    const std::string stored = deflated(bytes);
    return record(name, stored.size(), static_cast<std::int32_t>(bytes.size())) + stored;
}

// A folder without its own record: entries in the order of their names, then the end.
std::string level(const fs::path& folder) {
    std::map<std::string, std::string> entries;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
        const std::string name = entry.path().filename().string();
        if (entry.is_directory()) {
            const std::string content = level(entry.path());
            entries[name] = record(name, content.size(), -1) + content;
        } else if (entry.path().extension() == presetSourceExtension) {
            const std::string preset = entry.path().stem().string() + ".tvp";
            try {
                entries[preset] = fileEntry(preset, presetBytes(readPresetSource(readAll(entry.path()))));
            } catch (const PresetSourceError& error) {
                throw PresetSourceError(entry.path().string() + ": " + error.what());
            }
        }
    }
    std::string bytes;
    for (const auto& [name, content] : entries)
        bytes += content;
    return bytes + record({}, 0, 0);
}

} // namespace

std::string presetBytes(const PresetSource& source) {
    std::ostringstream stream;
    BinaryDataWriter writer(&stream);
    writer.writeHeader(PresetLayout::signature, PresetLayout::version);
    writer.writeInt32(static_cast<std::int32_t>(source.values.size()));
    for (const float value : source.values)
        writer.writeFloat(value);
    return stream.str();
}

std::string mapBytes(int oldVersion) {
    const PresetLayout::VersionMap map = PresetLayout::mapOf(oldVersion);
    std::ostringstream stream;
    BinaryDataWriter writer(&stream);
    writer.writeHeader("PMap", 1);
    writer.writeInt32(PresetLayout::parameterCount);
    writer.writeInt32(static_cast<std::int32_t>(map.indices.size()));
    for (const auto* list : {&map.indices, &map.added})
        for (const std::uint32_t index : *list)
            writer.writeUInt32(index);
    return stream.str();
}

std::string packPresets(const fs::path& folder) {
    const std::string presets = level(folder);
    const std::string nothing = record({}, 0, 0);
    const std::string content = record("ApplicationData", nothing.size(), -1) + nothing +
                                record("FactoryPresets", presets.size(), -1) + presets + nothing;
    constexpr std::size_t skippedBytes = 16 + 25; // words and a field that no reader looks at
    std::ostringstream header;
    header << "TV/ISB/3";
    BinaryDataWriter(&header).writeInt32(static_cast<std::int32_t>(8 + 4 + skippedBytes + content.size() - 28));
    header << std::string(skippedBytes, '\0');
    return header.str() + content;
}
