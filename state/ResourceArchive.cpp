#include "state/ResourceArchive.h"

#include "framework/TextHelpers.h"
#include "platform/Files.h"
#include "platform/Folders.h"
#include "platform/Paths.h"

#include <cstring>
#include <zlib.h>

namespace {

constexpr std::string_view magic = "TV/ISB/3";
constexpr std::int32_t largestFile = 1 << 24;
constexpr int deepest = 32;

std::int32_t int32At(std::string_view bytes, std::size_t offset) noexcept {
    const auto byteAt = [&](std::size_t i) { return std::uint32_t{static_cast<std::uint8_t>(bytes[offset + i])}; };
    return static_cast<std::int32_t>(byteAt(0) | byteAt(1) << 8 | byteAt(2) << 16 | byteAt(3) << 24);
}

bool isSafeName(std::string_view name) noexcept {
    return name.front() != '.' && name.find_first_of(std::string_view("/\\\0", 3)) == name.npos &&
           name.find("..") == name.npos;
}

bool inflateAll(std::string_view stored, std::int32_t fullSize, std::string& result) {
    if (fullSize < 0 || fullSize > largestFile)
        return false;
    result.assign(static_cast<std::size_t>(fullSize) + 1, '\0'); // one more than stated shows what is too long
    z_stream stream{};
    if (inflateInit(&stream) != Z_OK)
        return false;
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(stored.data()));
    stream.avail_in = static_cast<uInt>(stored.size());
    stream.next_out = reinterpret_cast<Bytef*>(result.data());
    stream.avail_out = static_cast<uInt>(result.size());
    const int state = inflate(&stream, Z_FINISH);
    const bool whole = state == Z_STREAM_END && stream.total_out == static_cast<uLong>(fullSize);
    inflateEnd(&stream);
    result.resize(static_cast<std::size_t>(fullSize));
    return whole;
}

// "Kick.tvp" is kept as "Kick (old).tvp", beside those that were kept before.
bool keepOld(const std::string& path) {
    const std::string_view stem = stripExtension(path);
    const std::string_view extension = std::string_view(path).substr(stem.size());
    for (int number = 1; number < 1000; ++number) {
        const std::string label = number == 1 ? " (old)" : " (old " + std::to_string(number) + ")";
        const std::string kept = std::string(stem).append(label).append(extension);
        if (!fileExists(kept))
            return renameFile(path, kept);
    }
    return false;
}

} // namespace

bool ResourceArchive::takeRecord(std::string_view& level, Record& record) {
    if (level.size() < recordBytes)
        return false;
    const auto nameLength = static_cast<std::size_t>(static_cast<std::uint8_t>(level[0]));
    if (nameLength > longestName)
        return false;
    record.name = level.substr(1, nameLength);
    record.storedSize = int32At(level, 68);
    record.fullSize = int32At(level, 72);
    level.remove_prefix(recordBytes);
    if (record.name.empty())
        return true;
    if (record.storedSize < 0 || static_cast<std::size_t>(record.storedSize) > level.size() || !isSafeName(record.name))
        return false;
    record.content = level.substr(0, static_cast<std::size_t>(record.storedSize));
    level.remove_prefix(record.content.size());
    return true;
}

bool ResourceArchive::unpack(std::string_view folder, const std::string& target, FactoryFiles how) const {
    if (bytes.size() < contentOffset || !bytes.starts_with(magic))
        return false;
    Record record;
    for (std::string_view level = bytes.substr(contentOffset); !level.empty();) {
        if (!takeRecord(level, record) || record.name.empty())
            return false;
        if (record.isFolder() && compareText(record.name, folder))
            return unpackLevel(record.content, target, how, 0);
    }
    return false;
}

bool ResourceArchive::unpackLevel(std::string_view level, const std::string& target, FactoryFiles how, int depth) {
    if (depth > deepest || !createDirectories(target))
        return false;
    Record record;
    while (!level.empty()) {
        if (!takeRecord(level, record))
            return false;
        if (record.name.empty())
            return true;
        const std::string path = appendPath(target, record.name);
        if (!(record.isFolder() ? unpackLevel(record.content, path, how, depth + 1) : unpackFile(record, path, how)))
            return false;
    }
    return true;
}

bool ResourceArchive::unpackFile(const Record& record, const std::string& path, FactoryFiles how) {
    const bool exists = fileExists(path);
    if (exists && how == FactoryFiles::onlyMissing)
        return true;
    std::string content;
    if (!inflateAll(record.content, record.fullSize, content))
        return false;
    std::string present;
    const bool same = exists && readFile(path, largestFile, present) && present == content;
    if (same)
        return true;
    if (exists && how == FactoryFiles::keepEdited && !keepOld(path))
        return false;
    // Lost in a crash, the file is unpacked again: nothing waits here for the disk.
    return replaceFile(path, content, FileSafety::againstOthers);
}
