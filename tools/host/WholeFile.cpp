#include "tools/host/WholeFile.h"

#include "tools/host/Failure.h"

#include <filesystem>
#include <fstream>
#include <iterator>

std::string wholeFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::string bytes;
    if (file)
        bytes.assign(std::istreambuf_iterator<char>(file), {});
    if (!file || file.bad() || std::filesystem::is_directory(path))
        throw Failure("cannot read " + path);
    return bytes;
}
