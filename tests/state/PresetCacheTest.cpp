#include "state/PresetCache.h"
#include "platform/Clock.h"
#include "platform/Folders.h"
#include "tests/state/StateTestObjects.h"

#include <filesystem>
#include <fstream>

namespace {

class PresetCacheTest : public StateTest {
protected:
    static constexpr const char* file = "PresetCache.dat";

    std::string root() const { return home.path("tree/"); }
    PresetCache::Source source() const { return {{"ZK3p"}, 4}; }
    std::string cachePath() const { return home.path(file); }

    void writePreset(const std::string& name, const std::string& author, std::string_view tags = "") {
        Bytes bytes = binaryPreset("ZK3p", 4, {1.0f, 2.0f});
        bytes.raw("CuSV").i32(1).i32(2).string("AUTHOR").string(author).string("TAGS").string(tags);
        home.write("tree/" + name, bytes.text);
    }
    Preset at(const std::string& name) const {
        Preset preset;
        preset.path = home.path("tree/" + name);
        return preset;
    }
    std::string authorOf(PresetCache& cache, const std::string& name) const {
        Preset preset = at(name);
        return cache.describe(preset) ? preset.author : "unknown";
    }
    // One entry, by the table of the file.
    Bytes entry(const std::string& name, std::int64_t time) const {
        Bytes bytes;
        return bytes.string(home.path("tree/" + name))
            .i64(time)
            .string("Name")
            .i32(0)
            .i32(5)
            .string("Eve")
            .string("about")
            .i32(1)
            .string("warm");
    }
};

TEST_F(PresetCacheTest, ReadsTheFilesOfAllItsVersionsAndWritesTheNewest) {
    home.write("tree/a.tvp", "");
    const std::string head = Bytes().raw("tvPC").text;
    const std::string favorite = Bytes().i32(1).string(home.path("tree/a.tvp")).text;
    const std::string folders = Bytes().i32(1).string(root()).text;
    const std::string one = Bytes().i32(1).text + entry("a.tvp", 77).text;
    const std::pair<int, std::string> versions[] = {
        {2, one + favorite}, {3, folders + one + favorite}, {4, folders + one}};
    for (const auto& [version, content] : versions) {
        std::filesystem::remove(home.path("tree/Favorites.txt"));
        home.write(file, head + Bytes().i32(version).text + content);
        PresetCache cache(cachePath(), source());
        cache.load();
        EXPECT_EQ(authorOf(cache, "a.tvp"), "Eve") << version;
        EXPECT_EQ(cache.isFavorite(at("a.tvp")), version < 4) << version;
        EXPECT_EQ(cache.search("WAR"), std::vector<std::string>{home.path("tree/a.tvp")});
        ASSERT_TRUE(cache.save());
        EXPECT_EQ(home.read("tree/Favorites.txt").ends_with("\n\na.tvp\n"), version == 3);
        if (version == 3) {
            EXPECT_EQ(home.read(file), head + Bytes().i32(4).text + folders + one);
        }
    }
    const std::string whole = head + Bytes().i32(4).text + folders + one;
    std::vector<std::string> damaged{"tvPD" + whole.substr(4), head + Bytes().i32(5).text + whole.substr(8),
                                     head + Bytes().i32(4).i32(0).i32(INT32_MAX).text};
    for (std::size_t size = 0; size < whole.size(); size += 5)
        damaged.push_back(whole.substr(0, size));
    for (const std::string& bytes : damaged) {
        home.write(file, bytes);
        PresetCache cache(home.path("other/unused"), source());
        PresetCache read(cachePath(), source());
        read.load();
        EXPECT_FALSE(read.contains(at("a.tvp"))) << bytes.size();
    }
}

TEST_F(PresetCacheTest, ReadsNewAndChangedPresetsOnly) {
    writePreset("a.tvp", "Ann", "bass, dark");
    writePreset("Deep/b.tvp", "Bob");
    home.write("tree/c.tvp", "[Preset]\nSignature=ZK3p\nVersion=4\nAuthor=Cid\n");
    home.write("tree/d.tvp", "no preset");
    PresetManager manager(root(), ".tvp");
    {
        PresetCache cache(cachePath(), source());
        cache.sync(manager.allPresets(), {root()});
        cache.finish();
        EXPECT_EQ(cache.state(), PresetCache::State::complete);
        EXPECT_EQ(authorOf(cache, "a.tvp") + authorOf(cache, "Deep/b.tvp") + authorOf(cache, "c.tvp"), "AnnBobCid");
        EXPECT_EQ(authorOf(cache, "d.tvp"), "");
        EXPECT_EQ(cache.search("deep"), std::vector<std::string>{home.path("tree/Deep/b.tvp")});
        EXPECT_TRUE(cache.search("dark bob").empty());
    }
    // The content changes behind its back, the time of one file too: only that one is read again.
    const auto time = std::filesystem::last_write_time(home.path("tree/a.tvp"));
    writePreset("a.tvp", "Hidden");
    std::filesystem::last_write_time(home.path("tree/a.tvp"), time);
    writePreset("Deep/b.tvp", "Bea");
    std::filesystem::last_write_time(home.path("tree/Deep/b.tvp"), time + std::chrono::hours(1));
    std::filesystem::remove(home.path("tree/c.tvp"));
    manager.rescanAll();
    PresetCache cache(cachePath(), source());
    cache.load();
    cache.sync(manager.allPresets(), {root()});
    cache.finish();
    EXPECT_EQ(authorOf(cache, "a.tvp") + authorOf(cache, "Deep/b.tvp"), "AnnBea");
    EXPECT_EQ(manager.findByName("a", true)->author, "Ann");
    EXPECT_EQ(authorOf(cache, "c.tvp"), "unknown");
    EXPECT_TRUE(cache.search("cid").empty());
}

TEST_F(PresetCacheTest, FavouritesKeepWhatAPersonWroteIntoTheirFile) {
    home.write("tree/Favorites.txt", "# mine\na.tvp\nGone/x.tvp\n\n# end\n");
    for (const char* name : {"a.tvp", "Sub/b.tvp"})
        writePreset(name, "");
    PresetManager manager(root(), ".tvp");
    PresetCache cache(cachePath(), source());
    cache.sync(manager.allPresets(), {root()});
    cache.finish();
    EXPECT_TRUE(cache.isFavorite(at("a.tvp")));
    cache.setFavorite(at("a.tvp"), false);
    cache.setFavorite(at("Sub/b.tvp"), true);
    ASSERT_TRUE(cache.save());
    EXPECT_EQ(home.read("tree/Favorites.txt"), "# mine\nGone/x.tvp\n\n# end\nSub/b.tvp\n");
}

TEST_F(PresetCacheTest, MetadataAreRewrittenInPlaceAndTheValuesStay) {
    writePreset("a.tvp", "Ann");
    home.write("tree/t.tvp", "[Preset]\nSignature=ZK3p\nVersion=4\nAuthor=Old\n\n[Parameters]\nBand 1 Gain=1.5\n");
    home.write("tree/none.tvp", "nothing");
    PresetCache cache(cachePath(), source());
    Preset wanted = at("a.tvp");
    wanted.author = "Eve";
    wanted.tags = {"x", "y z"};
    ASSERT_TRUE(cache.writeMetadata(wanted));
    Bytes bytes = binaryPreset("ZK3p", 4, {1.0f, 2.0f});
    EXPECT_EQ(home.read("tree/a.tvp"),
              bytes.raw("CuSV").i32(1).i32(2).string("AUTHOR").string("Eve").string("TAGS").string("x,y z").text);
    wanted.path = home.path("tree/t.tvp");
    ASSERT_TRUE(cache.writeMetadata(wanted));
    EXPECT_EQ(home.read("tree/t.tvp"), "[Preset]\nSignature=ZK3p\nVersion=4\nAuthor=Eve\nTags=\"x,y z\"\n\n"
                                       "[Parameters]\nBand 1 Gain=1.5\n");
    wanted.path = home.path("tree/none.tvp");
    EXPECT_FALSE(cache.writeMetadata(wanted));
    EXPECT_EQ(home.read("tree/none.tvp"), "nothing");
    EXPECT_EQ(authorOf(cache, "a.tvp"), "Eve");
    EXPECT_EQ(PresetCache::hashOf("foobar"), 0x85944171F73967E8u);
}

} // namespace
