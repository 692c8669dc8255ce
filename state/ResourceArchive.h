// Reads the archive "TV/ISB/3": folders of compressed files.
// Threads: the one that made it.
#pragma once

#include "state/FactoryPresets.h"

#include <cstdint>
#include <string>
#include <string_view>

class ResourceArchive {
public:
    static constexpr std::size_t recordBytes = 76;
    static constexpr std::size_t longestName = 67;
    static constexpr std::size_t contentOffset = 53; // of the first record

    explicit ResourceArchive(std::string_view content) noexcept : bytes(content) {} // must outlive this object

    // Unpacks a folder of the top level, found without regard to case, into the target, which is made. False: there is
    // no such folder, or something in it is damaged or cannot be written; what was written stays.
    [[nodiscard]] bool unpack(std::string_view folder, const std::string& target, FactoryFiles how) const;

private:
    struct Record {
        std::string_view name;       // empty: the end of a level
        std::int32_t storedSize = 0; // of a folder: up to and with its end record
        std::int32_t fullSize = 0;   // -1: a folder
        std::string_view content;
        bool isFolder() const noexcept { return fullSize == -1; }
    };

    // Takes the record at the head of a level and what belongs to it. False: it reaches beyond the level, or its name
    // could lead out of the folder.
    [[nodiscard]] static bool takeRecord(std::string_view& level, Record& record);
    [[nodiscard]] static bool unpackLevel(std::string_view level, const std::string& target, FactoryFiles how,
                                          int depth);
    [[nodiscard]] static bool unpackFile(const Record& record, const std::string& path, FactoryFiles how);

    std::string_view bytes;
};
