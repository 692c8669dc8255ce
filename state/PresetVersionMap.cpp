#include "state/PresetVersionMap.h"

#include "base/BinaryDataReader.h"
#include "platform/BinaryFiles.h"
#include "platform/Resources.h"

#include <algorithm>
#include <string>

namespace {

constexpr std::int32_t mostParameters = 1 << 16;

} // namespace

bool PresetVersionMap::load(std::string_view signature, std::int32_t version) {
    const std::string name = "PresetMap_" + std::string(signature) + "_" + std::to_string(version) + ".tvpresetmap";
    if (!resourceExists(name))
        return false;
    BinaryResourceReader reader(name);
    return read(reader);
}

bool PresetVersionMap::read(BinaryDataReader& reader) {
    const std::string signature = reader.readHeader();
    newCount = reader.readInt32();
    const std::int32_t oldCount = reader.readInt32();
    if (signature != "PMap" || !reader.good() || newCount < 0 || newCount > mostParameters || oldCount < 0 ||
        oldCount > mostParameters || !readIndices(reader, oldCount, indices))
        return false;
    const auto dropped = static_cast<std::int32_t>(std::count_if(indices.begin(), indices.end(), isDropped));
    return readIndices(reader, newCount - oldCount + dropped, added) &&
           std::none_of(added.begin(), added.end(), isDropped);
}

bool PresetVersionMap::readIndices(BinaryDataReader& reader, std::int32_t count, std::vector<std::uint32_t>& list) {
    list.clear();
    if (count < 0)
        return false;
    for (std::int32_t i = 0; i < count && reader.good(); ++i)
        list.push_back(reader.readUInt32());
    return reader.good() && std::all_of(list.begin(), list.end(), [this](std::uint32_t index) {
               return isDropped(index) || index < static_cast<std::uint32_t>(newCount);
           });
}
