#include "tests/fuzz/Readers.h"

#include "base/ReleaseAssert.h"
#include "base/SectionFileReader.h"
#include "base/SectionFileWriter.h"
#include "framework/zelk/ZelkPlugin.h"
#include "platform/Files.h"
#include "platform/Folders.h"
#include "state/FavoritesFile.h"
#include "state/PresetCache.h"
#include "state/ResourceArchive.h"
#include "tests/support/TemporaryHome.h"

#include <cmath>
#include <filesystem>
#include <sstream>
#include <vector>

namespace fuzz {

namespace {

// One instance for all inputs: making one costs more than reading.
struct World {
    TemporaryHome home;
    ZelkPlugin plugin;

    static World& get() {
        static World world;
        return world;
    }
    std::string file(std::string_view name, std::string_view bytes) const {
        std::string path = home.path() + std::string(name);
        release_assert(replaceFile(path, bytes, FileSafety::againstOthers));
        return path;
    }
    std::vector<float> values() const {
        std::vector<float> list;
        for (const AbstractPluginParameter* parameter : plugin.parameters()) {
            list.push_back(parameter->value());
            release_assert(parameter->value() >= parameter->minimum() && parameter->value() <= parameter->maximum());
        }
        return list;
    }
};

} // namespace

void readPreset(std::string_view bytes) {
    World& world = World::get();
    const std::vector<float> before = world.values();
    const std::string error = world.plugin.loadPresetFile(world.file("fuzz.tvp", bytes));
    const std::vector<float> after = world.values();
    // One of the older sets that ends early is applied too, though the error is that of the first attempt.
    const bool isOlder = bytes.find("ZK2p") != bytes.npos || bytes.find("ZKPr") != bytes.npos;
    const bool mayChange =
        error.empty() || error == "Invalid file format." || error.starts_with("Unknown parameter: ") || isOlder;
    release_assert(mayChange || error.starts_with("Unknown preset signature") || error == "Invalid preset header." ||
                   error.starts_with("Unsupported preset version: "));
    release_assert(mayChange || before == after);
    release_assert(world.plugin.changeDepth() == 0);
}

// What was read is written and read again: it must be the same.
void readSections(std::string_view bytes) {
    const auto read = [](const std::string& text, std::string* copy) {
        std::istringstream in(text);
        std::ostringstream out;
        SectionFileReader reader(in);
        SectionFileWriter writer(out);
        std::vector<std::string> seen;
        for (;;) {
            const std::string key = reader.next();
            if (!key.empty()) {
                seen.push_back(key + "=" + reader.value());
                writer.writeText(key, reader.value());
            } else if (!reader.sectionName().empty()) {
                seen.push_back(reader.sectionName());
                writer.beginSection(reader.sectionName());
            } else {
                break;
            }
        }
        if (copy != nullptr)
            *copy = out.str();
        return seen;
    };
    std::string copy;
    const std::vector<std::string> seen = read(std::string(bytes), &copy);
    release_assert(read(copy, nullptr) == seen);
}

void readState(std::string_view bytes) {
    World& world = World::get();
    std::istringstream stream{std::string(bytes)};
    bool begun = false;
    const std::vector<float> before = world.values();
    if (world.plugin.readParameterBlock(stream, begun))
        static_cast<void>(world.plugin.readState(stream));
    const std::vector<float> after = world.values();
    release_assert(begun || before == after);
    std::istringstream again{std::string(bytes)};
    static_cast<void>(world.plugin.stateEquals(again));
}

void readArchive(std::string_view bytes) {
    World& world = World::get();
    const std::string target = world.home.path("fuzz/target");
    static_cast<void>(ResourceArchive(bytes).unpack("FactoryPresets", target, FactoryFiles::overwrite));
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(world.home.path("fuzz"), error))
        release_assert(entry.path() == target); // nothing leads out of it
    std::filesystem::remove_all(world.home.path("fuzz"), error);
}

void readCache(std::string_view bytes) {
    World& world = World::get();
    release_assert(createDirectories(world.home.path("cache")));
    const std::string path = world.file("cache/PresetCache.dat", bytes);
    PresetCache cache(path, {{"ZK3p"}, 4});
    cache.load();
    static_cast<void>(cache.search("a"));
    cache.sync({}, {}); // forgets the folders that the bytes name, so that the end writes nothing there
}

void readFavorites(std::string_view bytes) {
    World& world = World::get();
    release_assert(createDirectories(world.home.path("liked")));
    world.file("liked/Favorites.txt", bytes);
    const std::string root = world.home.path("liked/");
    const std::set<std::string> found = ::readFavorites(root);
    release_assert(writeFavorites(root, found, found));
    release_assert(::readFavorites(root) == found);
}

} // namespace fuzz
