#include "platform/Files.h"

#include <fstream>

bool readFile(const std::string& path, std::int64_t mostBytes, std::string& bytes) {
    const std::int64_t size = regularFileSize(path);
    if (size < 0 || size > mostBytes)
        return false;
    const auto file = openFile(path, std::ios::in | std::ios::binary);
    std::string read(static_cast<std::size_t>(size), '\0');
    if (!file->read(read.data(), size))
        return false;
    bytes.swap(read);
    return true;
}
