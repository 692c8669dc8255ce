#include "platform/Paths.h"

std::string withTrailingSeparator(std::string_view path) {
    std::string result(path);
    if (result.empty() || pathSeparators.find(result.back()) == pathSeparators.npos)
        result += pathSeparator;
    return result;
}

std::string appendPath(std::string_view folder, std::string_view name) {
    if (!name.empty() && pathSeparators.find(name.front()) != pathSeparators.npos)
        name.remove_prefix(1);
    return withTrailingSeparator(folder).append(name);
}

std::string_view fileNameOf(std::string_view path) noexcept {
    return path.substr(path.find_last_of(pathSeparators) + 1); // npos + 1 is 0
}

std::string_view folderOf(std::string_view path) noexcept {
    return path.substr(0, path.find_last_of(pathSeparators) + 1);
}

std::string_view stripExtension(std::string_view name) noexcept {
    return name.substr(0, name.rfind('.'));
}

std::string insertScaleSuffix(std::string_view name) {
    const std::string_view stem = stripExtension(name);
    return std::string(stem).append("_2x").append(name.substr(stem.size()));
}
