#include "state/FavoritesFile.h"

#include "platform/Files.h"
#include "platform/Paths.h"

#include <algorithm>
#include <cstdint>

namespace {

constexpr std::int64_t mostBytes = 1 << 24;

constexpr std::string_view head = "# == Tessivane Preset Favorites File ==\n"
                                  "# This file contains all favorites in this folder and its subfolders.\n"
                                  "# Each file must be a valid relative *nix path (for example \"Bass/Test.tvp\").\n"
                                  "# Note: Paths are case sensitive across all operating systems.\n"
                                  "# Lines starting with a '#' will be ignored.\n\n";

std::string fileIn(std::string_view root) {
    return appendPath(root, "Favorites.txt");
}

std::string_view takeLine(std::string_view& text) {
    const std::size_t end = text.find('\n');
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return line; // with the CR of a CR LF: a line that stays is written as it was
}

// The full path that a line names; empty: it names none.
std::string pathOf(std::string_view line, std::string_view root) {
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    if (line.empty() || line.front() == '#')
        return {};
    std::string relative(line);
    std::replace(relative.begin(), relative.end(), '/', pathSeparator);
    return appendPath(root, relative);
}

bool fitsOnALine(std::string_view path) {
    return path.find('\n') == path.npos && !path.ends_with('\r');
}

std::string lineOf(std::string_view path, std::string_view root) {
    std::string relative(path.substr(withTrailingSeparator(root).size()));
    std::replace(relative.begin(), relative.end(), pathSeparator, '/');
    return relative + '\n';
}

} // namespace

std::set<std::string> readFavorites(std::string_view root) {
    std::set<std::string> favorites;
    std::string text;
    if (root.empty() || !readFile(fileIn(root), mostBytes, text))
        return favorites;
    for (std::string_view rest = text; !rest.empty();)
        if (std::string path = pathOf(takeLine(rest), root); !path.empty())
            favorites.insert(std::move(path));
    return favorites;
}

bool writeFavorites(std::string_view root, const std::set<std::string>& favorites, const std::set<std::string>& known) {
    std::string former;
    const bool exists = readFile(fileIn(root), mostBytes, former);
    if (!exists && fileExists(fileIn(root)))
        return false; // what cannot be read must not be lost
    std::string text;
    std::set<std::string> written;
    for (std::string_view rest = former; !rest.empty();) {
        const std::string_view line = takeLine(rest);
        const std::string path = pathOf(line, root);
        if (!path.empty() && known.contains(path) && !favorites.contains(path))
            continue;
        text.append(line).append("\n");
        written.insert(path);
    }
    const std::string prefix = withTrailingSeparator(root);
    std::string added;
    for (const std::string& path : favorites)
        if (path.starts_with(prefix) && !written.contains(path) && fitsOnALine(path))
            added += lineOf(path, root);
    if (!exists && added.empty())
        return true;
    if (!exists)
        text = head;
    text += added;
    return text == former || replaceFile(fileIn(root), text);
}
