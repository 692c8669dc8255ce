// The text of stepped values, the same for every value type.
// Threads: any; what returns a string allocates.
#pragma once

#include "framework/ValueNames.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

enum class IndexedTextKind { neither, name, number };

// A value's name (exactly, else without regard to case), or a whole number. The result is the position of the name, or
// the number as it stands.
IndexedTextKind parseIndexedText(std::string_view text, const ValueNames& names, std::int64_t& result);

std::string indexedText(std::int32_t index, std::int32_t position, const ValueNames& names);
std::string shortIndexedText(const std::string& text, std::size_t maxLength);
