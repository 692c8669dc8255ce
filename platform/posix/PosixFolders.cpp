#include "platform/posix/PosixFolders.h"
#include "platform/Folders.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <pwd.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

std::string asFolder(std::string path) {
    if (!path.empty() && path.back() != pathSeparator)
        path += pathSeparator;
    return path;
}

// A relative path would mean another place for each program that the user starts, so it does not count.
std::string absoluteFolder(const char* path) {
    return path != nullptr && path[0] == pathSeparator ? asFolder(path) : std::string();
}

std::string homeOfPasswordEntry() {
    std::vector<char> memory(16384); // what glibc itself suggests is 1024; entries of directory services are longer
    passwd entry{};
    passwd* found = nullptr;
    if (getpwuid_r(getuid(), &entry, memory.data(), memory.size(), &found) != 0 || found == nullptr)
        return {};
    return absoluteFolder(found->pw_dir);
}

std::string belowHome(std::string_view folder) {
    std::string home = homeFolder();
    return home.empty() ? home : home.append(folder);
}

std::string namedOrBelowHome(const char* variable, std::string_view folder) {
    std::string named = absoluteFolder(std::getenv(variable));
    return named.empty() ? belowHome(folder) : named;
}

// The value of a line such as XDG_DOCUMENTS_DIR="$HOME/Documents". Empty: another line, or a place that is no path.
std::string documentsOfLine(std::string_view line) {
    static constexpr std::string_view start = "XDG_DOCUMENTS_DIR=\"";
    static constexpr std::string_view home = "$HOME";
    line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
    if (!line.starts_with(start))
        return {};
    line.remove_prefix(start.size());
    std::string value;
    for (std::size_t i = 0; i < line.size() && line[i] != '"'; ++i) {
        if (line[i] == '\\' && i + 1 < line.size())
            ++i;
        value += line[i];
    }
    if (value.starts_with(home) && (value.size() == home.size() || value[home.size()] == pathSeparator)) {
        const std::size_t rest = std::min(home.size() + 1, value.size());
        return asFolder(belowHome(value.substr(rest)));
    }
    return absoluteFolder(value.c_str());
}

} // namespace

std::string homeFolder() {
    std::string named = absoluteFolder(std::getenv("HOME"));
    return named.empty() ? homeOfPasswordEntry() : named;
}

std::string userDataFolder() {
    return namedOrBelowHome("XDG_DATA_HOME", ".local/share/");
}

std::string userConfigFolder() {
    return namedOrBelowHome("XDG_CONFIG_HOME", ".config/");
}

std::string machineConfigFolder() {
    return "/etc/xdg/";
}

std::string documentsFolder() {
    std::string documents;
    const std::string config = userConfigFolder();
    if (struct stat status{};
        !config.empty() && stat((config + "user-dirs.dirs").c_str(), &status) == 0 && S_ISREG(status.st_mode)) {
        std::ifstream file(config + "user-dirs.dirs");
        for (std::string line; std::getline(file, line);)
            if (std::string found = documentsOfLine(line); !found.empty())
                documents = std::move(found); // as for a shell that reads the file, the last one counts
    }
    return documents.empty() ? belowHome("Documents/") : documents;
}

bool directoryExists(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool createDirectories(const std::string& path) {
    if (path.empty())
        return false;
    for (std::size_t end = path.find(pathSeparator, 1); end != std::string::npos;
         end = path.find(pathSeparator, end + 1))
        mkdir(path.substr(0, end).c_str(), 0755); // those that exist, and those that fail, show at the end
    mkdir(path.c_str(), 0755);
    return directoryExists(path);
}
