// "Favorites.txt" in a folder of presets: which of them the user likes, in lines that a person can edit.
// Threads: any.
#pragma once

#include <set>
#include <string>
#include <string_view>

// Full paths. A file that is missing or cannot be read names none.
std::set<std::string> readFavorites(std::string_view root);

// Comments and lines of presets that are not known stay where they are; known ones that are no favourites go, new ones
// of this root come at the end. Nothing is written when nothing changes.
[[nodiscard]] bool writeFavorites(std::string_view root, const std::set<std::string>& favorites,
                                  const std::set<std::string>& known);
