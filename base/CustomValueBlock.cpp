#include "base/CustomValueBlock.h"

#include "base/BinaryDataReader.h"
#include "base/BinaryDataWriter.h"

#include <utility>

namespace {

constexpr std::size_t mostBytes = 1 << 24; // of all keys and values; what is larger was not written by us

} // namespace

void writeCustomValues(BinaryDataWriter& writer, const CustomValues& values) {
    writer.writeHeader("CuSV", 1);
    writer.writeInt32(static_cast<std::int32_t>(values.size()));
    for (const auto& [key, value] : values) {
        writer.writeString(key);
        writer.writeString(value);
    }
}

bool readCustomValues(BinaryDataReader& reader, CustomValues& values) {
    const std::int32_t outerVersion = reader.version;
    const std::string signature = reader.readHeader();
    reader.version = outerVersion;
    const std::int32_t count = reader.readInt32();
    if (signature != "CuSV" || count < 0)
        return false;
    CustomValues found;
    std::size_t bytes = 0;
    for (std::int32_t i = 0; i < count; ++i) {
        std::string key = reader.readString();
        std::string value = reader.readString();
        bytes += key.size() + value.size() + 64; // 64: what an entry costs beside its texts
        if (!reader.good() || bytes > mostBytes)
            return false;
        found.insert_or_assign(std::move(key), std::move(value));
    }
    if (!reader.good())
        return false;
    values = std::move(found);
    return true;
}
