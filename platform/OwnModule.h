// Where this library itself lies.
// Threads: any but audio.
#pragma once

#include <string>
#include <string_view>

// UTF-8 path of the file that holds this code. Where the loader tells it, what the host calls the file does not count:
// links and mounts give one file many names. False: the loader does not know it, and path is left alone.
[[nodiscard]] bool findOwnModule(std::string_view pathFromHost, std::string& path);
