#include "platform/Files.h"

#include <filesystem>
#include <fstream>

std::unique_ptr<std::fstream> openFile(const std::string& path, std::ios::openmode mode) {
    return std::make_unique<std::fstream>(std::filesystem::path(std::u8string(path.begin(), path.end())), mode);
}

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
