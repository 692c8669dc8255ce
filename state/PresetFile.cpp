#include "state/PresetFile.h"

#include "platform/Files.h"

#include <sstream>
#include <utility>

std::unique_ptr<std::istream> openPresetFile(const std::string& path) {
    std::string bytes;
    const bool read = readFile(path, mostPresetBytes, bytes);
    auto stream = std::make_unique<std::istringstream>(std::move(bytes), std::ios::in | std::ios::binary);
    if (!read)
        stream->setstate(std::ios::failbit);
    return stream;
}

bool isPresetName(std::string_view name) noexcept {
    return !name.empty() && name != "." && name != ".." &&
           name.find_first_of(std::string_view("/\\\0", 3)) == name.npos;
}
