// Where this library itself lies.
// Threads: any but audio.
#pragma once

#include <string>

// UTF-8 path of the file that holds this code. False: the loader does not know it, and path is left alone.
[[nodiscard]] bool findOwnModule(std::string& path);
