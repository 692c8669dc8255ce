// Where the values of an older preset version belong today: the content of a "PMap" resource.
// Threads: the one that made it.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

class BinaryDataReader;

class PresetVersionMap {
public:
    static constexpr std::uint32_t firstDropped = 0xFFFFFFFEu; // this and the one above: the value has no place

    [[nodiscard]] bool load(std::string_view signature, std::int32_t version); // false: there is no such map
    [[nodiscard]] bool read(BinaryDataReader& reader);

    static bool isDropped(std::uint32_t index) noexcept { return index >= firstDropped; }

    std::int32_t parameterCount() const noexcept { return newCount; }
    const std::vector<std::uint32_t>& newIndices() const noexcept { return indices; } // one an old value
    const std::vector<std::uint32_t>& newParameters() const noexcept { return added; }

private:
    [[nodiscard]] bool readIndices(BinaryDataReader& reader, std::int32_t count, std::vector<std::uint32_t>& list);

    std::int32_t newCount = 0;
    std::vector<std::uint32_t> indices;
    std::vector<std::uint32_t> added; // parameters that the old version lacks
};
