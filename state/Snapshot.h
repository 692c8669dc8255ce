// The whole state of an instance at one moment.
// Threads: a plain record.
#pragma once

#include "base/CustomValueBlock.h"

#include <cstdint>
#include <string>
#include <vector>

struct Snapshot {
    std::string label; // for whoever looks at the history in a debugger
    std::string presetName;
    std::string presetPath;
    bool presetModified = false;
    std::int32_t compareSlot = 0;
    std::vector<float> parameterValues; // in the order of the ids
    std::vector<std::uint8_t> interfaceState;
    CustomValues customValues;
};
