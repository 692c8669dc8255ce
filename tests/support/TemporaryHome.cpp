#include "tests/support/TemporaryHome.h"

#include <filesystem>
#include <fstream>
#include <iterator>

namespace {

std::filesystem::path asPath(const std::string& text) {
    return std::u8string(text.begin(), text.end());
}

} // namespace

TemporaryHome::TemporaryHome() : folder(makeTestFolder("zelk-home") + nativePath("/")), redirection(folder) {}

TemporaryHome::~TemporaryHome() {
    std::error_code ignored;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder, ignored))
        if (entry.is_directory(ignored))
            std::filesystem::permissions(entry, std::filesystem::perms::owner_all, ignored);
    std::filesystem::remove_all(folder, ignored);
}

void TemporaryHome::write(const std::string& file, const std::string& content) const {
    const std::filesystem::path target = asPath(path(file));
    std::filesystem::create_directories(target.parent_path());
    std::ofstream(target, std::ios::binary) << content;
}

std::string TemporaryHome::read(const std::string& file) const {
    std::ifstream stream(asPath(path(file)), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}
