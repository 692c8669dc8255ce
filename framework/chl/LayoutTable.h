// The rows behind the look-ups of Layouts.h.
// Threads: any.
#pragma once

#include "framework/chl/Layouts.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace chl {

struct LayoutRow {
    std::string_view name;
    std::size_t channels;
    std::array<std::uint16_t, maxChannels> codes;       // in the host's channel order: pairs, tops, centre, LFE
    std::array<std::uint8_t, maxChannels> displayOrder; // the centre is back between left and right
    std::array<std::uint8_t, maxChannels> displayGroups;
};

extern const std::array<LayoutRow, static_cast<std::size_t>(layoutCount)> layoutTable;

} // namespace chl
