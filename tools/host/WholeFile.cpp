#include "tools/host/WholeFile.h"

#include "tools/host/Failure.h"
#include "tools/host/FilePath.h"

#include <filesystem>
#include <fstream>
#include <iterator>

std::string wholeFile(const std::string& path) {
    std::ifstream file(filePath(path), std::ios::binary);
    std::string bytes;
    if (file)
        bytes.assign(std::istreambuf_iterator<char>(file), {});
    if (!file || file.bad() || std::filesystem::is_directory(filePath(path)))
        throw Failure("cannot read " + path);
    return bytes;
}
