// What a host's project keeps of an instance beside the values of its parameters.
// Threads: any.
#pragma once

#include "base/CustomValueBlock.h"

#include <cstdint>
#include <string>
#include <string_view>

class BinaryDataReader;
class BinaryDataWriter;

struct StateBlock {
    static constexpr std::int32_t currentVersion = 3;

    void write(BinaryDataWriter& writer, std::string_view signature) const;
    // False: another signature, or not all of it is there.
    [[nodiscard]] bool read(BinaryDataReader& reader, std::string_view signature);

    std::int32_t version = currentVersion;
    std::string presetName;
    std::int32_t instanceId = -1; // -1: none
    bool automaticInstanceName = true;
    std::string instanceName;
    bool presetModified = false; // version 2 and later
    CustomValues customValues;   // version 3 and later
};
