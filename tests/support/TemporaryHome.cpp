#include "tests/support/TemporaryHome.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

TemporaryHome::TemporaryHome() {
    std::string name = (std::filesystem::temp_directory_path() / "zelk-home-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr)
        throw std::runtime_error("no temporary folder");
    folder = name + "/";
    setVariable("HOME", folder);
    for (const char* variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME"})
        setVariable(variable, std::nullopt);
}

TemporaryHome::~TemporaryHome() {
    for (const auto& [name, value] : before)
        value ? setenv(name.c_str(), value->c_str(), 1) : unsetenv(name.c_str());
    std::error_code ignored;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder, ignored))
        if (entry.is_directory(ignored))
            std::filesystem::permissions(entry, std::filesystem::perms::owner_all, ignored);
    std::filesystem::remove_all(folder, ignored);
}

void TemporaryHome::setVariable(const std::string& name, const std::optional<std::string>& value) {
    const char* const held = std::getenv(name.c_str());
    before.try_emplace(name, held != nullptr ? std::optional<std::string>(held) : std::nullopt);
    value ? setenv(name.c_str(), value->c_str(), 1) : unsetenv(name.c_str());
}

void TemporaryHome::write(const std::string& file, const std::string& content) const {
    const std::filesystem::path target(folder + file);
    std::filesystem::create_directories(target.parent_path());
    std::ofstream(target, std::ios::binary) << content;
}

std::string TemporaryHome::read(const std::string& file) const {
    std::ifstream stream(folder + file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}
