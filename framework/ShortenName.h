// Names for places with little room.
// Threads: any; it allocates.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// At most maxLength characters; 0: no limit. It abbreviates the words of audio first, then gathers capitals, then drops
// letters that are missed least, and cuts at last. A text that fits comes back as it is.
std::string shortenName(std::string_view text, std::size_t maxLength);
