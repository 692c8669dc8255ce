// The readers of files and chunks that come from outside, each fed with bytes. What must hold whatever the bytes are is
// checked here and ends the program.
#pragma once

#include <string>
#include <string_view>

namespace fuzz {

void readPreset(std::string_view bytes); // binary and text, through an instance
void readSections(std::string_view bytes);
void readState(std::string_view bytes);
void readArchive(std::string_view bytes);
void readCache(std::string_view bytes);
void readFavorites(std::string_view bytes);

struct Reader {
    std::string_view name; // of its folder of examples
    void (*read)(std::string_view bytes);
};

inline constexpr Reader readers[] = {{"preset", readPreset}, {"sections", readSections},
                                     {"state", readState},   {"archive", readArchive},
                                     {"cache", readCache},   {"favorites", readFavorites}};

} // namespace fuzz
