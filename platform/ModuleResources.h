// Data that the system's loader keeps with this library, beside the table of embedded resources.
// Threads: any but audio. For Resources alone.
#pragma once

#include <string_view>

[[nodiscard]] bool findModuleResource(std::string_view name, std::string_view& bytes); // without regard to case
