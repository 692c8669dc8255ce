#include "state/PresetManager.h"
#include "platform/Clock.h"
#include "platform/Folders.h"
#include "state/PresetCache.h"
#include "tests/state/StateTestObjects.h"

#include <ctime>
#include <filesystem>
#include <fstream>

namespace {

class PresetTree : public StateTest {
protected:
    static std::vector<std::string> namesOf(const std::vector<Preset*>& list) {
        std::vector<std::string> names;
        for (const Preset* preset : list)
            names.push_back(preset->name);
        return names;
    }
    std::string root() const { return home.path("tree/"); }
};

using Names = std::vector<std::string>;

TEST_F(PresetTree, FoldersStandByKeyThenNameAndWhatIsDeepComesFirst) {
    for (const char* file :
         {"loose.tvp", "Alone.TVP", "Drums/b.tvp", "Drums/A.tvp", "_10 Bass/x.tvp", "_x/y.tvp", "_5drums/1.tvp",
          "_5 Drums/2.tvp", "Drums/Deep/z.tvp", "Drums/notes.txt", "\xC3\x84ther/u.tvp", "\xC3\xA4rmel/v.tvp"})
        home.write("tree/" + std::string(file), "");
    PresetManager manager(root(), ".tvp");
    Names folders;
    for (const auto& folder : manager.subfolders())
        folders.push_back(std::to_string(folder->sortKey()) + folder->name());
    EXPECT_EQ(folders,
              (Names{"0x", "5Drums", "5drums", "10Bass", "10000Drums", "10000\xC3\xA4rmel", "10000\xC3\x84ther"}));
    EXPECT_EQ(namesOf(manager.allPresets()), (Names{"y", "2", "1", "x", "z", "A", "b", "v", "u", "Alone", "loose"}));
    EXPECT_EQ(manager.subfolders()[4]->presets()[0]->path, home.path("tree/Drums/A.tvp"));
    EXPECT_EQ(manager.subfolders()[4]->path(), home.path("tree/Drums/"));
}

TEST_F(PresetTree, NeighboursWrapWithinTheMainTreeAndRunOnFromOlderFolders) {
    for (const char* file : {"tree/a.tvp", "tree/b.tvp", "old/c.tvp", "old/d.tvp"})
        home.write(file, "");
    PresetManager manager(root(), ".tvp");
    manager.addExtraFolder(home.path("old"), "V2 Preset Folder");
    const auto step = [&](const char* from, PresetManager::Direction direction) {
        const Preset* const found = manager.neighbour(home.path(from), direction);
        return found != nullptr ? found->name : "none";
    };
    using enum PresetManager::Direction;
    EXPECT_EQ(step("tree/b.tvp", next), "a");
    EXPECT_EQ(step("tree/a.tvp", previous), "b");
    EXPECT_EQ(step("old/d.tvp", next), "a");
    EXPECT_EQ(step("old/c.tvp", previous), "b");
    EXPECT_EQ(step("tree/gone.tvp", next), "none");
    EXPECT_EQ(manager.findByName("c", true), nullptr);
    ASSERT_NE(manager.findByName("c", false), nullptr);
    std::filesystem::remove(home.path("old/c.tvp"));
    manager.rescanAll();
    EXPECT_EQ(manager.findByName("c", false), nullptr);
    EXPECT_EQ(manager.extraFolders()[0]->name(), "V2 Preset Folder");
}

TEST_F(PresetTree, LinksInACircleOddBytesAndTooDeepFoldersEndTheScanWell) {
    const std::string odd = fileNamesAreBytes ? "a\xFF" : "a\xEF\xBF\xBD";
    home.write("tree/sub/" + odd + ".tvp", "");
    const bool linked = linkFolder(root(), home.path("tree/sub/back"));
    std::string deep = "tree/deep";
    for (int i = 0; i < 40; ++i)
        deep += "/d";
    home.write(deep + "/x.tvp", "");
    PresetManager manager(root(), ".tvp");
    const std::vector<Preset*> list = manager.allPresets();
    ASSERT_EQ(list.size(), 1u);
    EXPECT_EQ(list[0]->name, "a\xEF\xBF\xBD");
    EXPECT_EQ(list[0]->path, home.path("tree/sub/" + odd + ".tvp"));
    if (linked) {
        EXPECT_TRUE(manager.subfolders()[1]->subfolders()[0]->empty()) << "the link back";
    }
    const PresetFolder outOfBudget(root(), ".tvp", 0);
    EXPECT_TRUE(outOfBudget.empty());
    EXPECT_EQ(outOfBudget.name(), "tree");
}

TEST_F(PresetTree, TwoThousandPresetsInFortyFoldersAreListedAndIndexedInTime) {
    for (int folder = 0; folder < 40; ++folder) {
        const std::string path = root() + std::to_string(folder);
        ASSERT_TRUE(createDirectories(path));
        for (int i = 0; i < 50; ++i)
            std::ofstream(path + "/" + std::to_string(i) + ".tvp");
    }
    const std::unique_ptr<IntervalTimer> timer = createIntervalTimer();
    PresetManager manager(root(), ".tvp");
    const std::vector<Preset*> list = manager.allPresets();
    RecordProperty("scan_ms", std::to_string(timer->elapsed()));
    EXPECT_EQ(list.size(), 2000u) << "the budget ended the scan after " << timer->elapsed() << " ms";

    PresetCache cache(home.path("PresetCache.dat"), {{"ZK3p"}, 4});
    for (const Preset* preset : list)
        cache.add(*preset);
    timer->reset();
    const std::clock_t begin = std::clock(); // other processes do not count
    cache.sync(list, {root()});
    cache.finish();
    EXPECT_LT(static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC, 0.1);
    RecordProperty("index_ms", std::to_string(timer->elapsed()));
}

} // namespace
