#include "platform/Files.h"
#include "platform/BinaryFiles.h"
#include "platform/FileEnumerator.h"
#include "platform/Folders.h"
#include "platform/Paths.h"
#include "platform/Resources.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <sys/resource.h>

namespace {

constexpr EmbeddedResource resources[] = {{"PRESETMAP_X_1", "PMap"}};

TEST(Paths, JoinAndCutAtTheLastSeparatorAndTheLastPoint) {
    EXPECT_EQ(appendPath("/a", "b"), "/a/b");
    EXPECT_EQ(appendPath("/a/", "/b"), "/a/b");
    EXPECT_EQ(fileNameOf("/a/b.c.d"), "b.c.d");
    EXPECT_EQ(fileNameOf("b"), "b");
    EXPECT_EQ(folderOf("/a/b"), "/a/");
    EXPECT_EQ(folderOf("b"), "");
    EXPECT_EQ(stripExtension("b.c.d"), "b.c");
    EXPECT_EQ(insertScaleSuffix("Knob.png"), "Knob_2x.png");
    EXPECT_EQ(insertScaleSuffix("Knob"), "Knob_2x");
}

TEST(Files, MakesThreeFoldersDeepButNotThroughAFile) {
    const TestFolder folder;
    EXPECT_TRUE(createDirectories(folder.path("one/two/three/")));
    EXPECT_TRUE(directoryExists(folder.path("one/two/three")));
    EXPECT_FALSE(fileExists(folder.path("one")));
    ASSERT_TRUE(replaceFile(folder.path("file"), "x"));
    EXPECT_TRUE(fileExists(folder.path("file")));
    EXPECT_FALSE(createDirectories(folder.path("file/below")));
    EXPECT_EQ(regularFileSize(folder.path("one")), -1);
    EXPECT_FALSE(openFile(folder.path("none"), std::ios::in | std::ios::binary)->good());
}

TEST(Files, ReplacesAllOrNothingWhenTheDiskIsFull) {
    const TestFolder folder;
    const std::string path = folder.path("kept.tvp");
    ASSERT_TRUE(replaceFile(path, "the old content"));
    std::filesystem::create_symlink(path, folder.path("link"));
    std::filesystem::permissions(path, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);

    const auto formerHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit former{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &former), 0);
    const rlimit tight{1000, former.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &tight), 0);
    const bool replaced = replaceFile(path, std::string(5000, 'n'));
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &former), 0);
    std::signal(SIGXFSZ, formerHandler);
    EXPECT_FALSE(replaced);
    std::string bytes;
    ASSERT_TRUE(readFile(path, 100, bytes));
    EXPECT_EQ(bytes, "the old content");

    ASSERT_TRUE(replaceFile(folder.path("link"), "new"));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path("link")));
    ASSERT_TRUE(readFile(path, 3, bytes));
    EXPECT_EQ(bytes, "new");
    EXPECT_FALSE(readFile(path, 2, bytes));
    EXPECT_EQ(std::filesystem::status(path).permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path("")), {}), 2) << "something was left";
}

TEST(FileEnumerator, ListsFilesByEndingWithoutRegardToCaseAndFoldersApart) {
    const TestFolder folder;
    for (const char* name : {"a.tvp", "b.TVP", "c.txt", "tvp", "\xFF.tvp"})
        ASSERT_TRUE(replaceFile(folder.path(name), ""));
    ASSERT_TRUE(createDirectories(folder.path("d.tvp")));
    std::filesystem::create_directory_symlink(folder.path("d.tvp"), folder.path("e"));
    std::filesystem::create_symlink(folder.path("nowhere"), folder.path("dead.tvp"));
    const auto names = [&](FileEnumerator::Filter filter, std::string_view ending) {
        std::set<std::string> found;
        const auto entries = enumerateFolder(folder.path(""), filter, ending);
        while (entries->next()) {
            found.insert(entries->name());
            if (filter == FileEnumerator::Filter::files) {
                EXPECT_EQ(entries->fileTime(), fileTimeOf(folder.path(entries->name())));
            }
        }
        return found;
    };
    EXPECT_EQ(names(FileEnumerator::Filter::files, ".tvp"), (std::set<std::string>{"a.tvp", "b.TVP", "\xFF.tvp"}));
    EXPECT_EQ(names(FileEnumerator::Filter::directories, ""), (std::set<std::string>{"d.tvp", "e"}));
    EXPECT_FALSE(enumerateFolder(folder.path("none"), FileEnumerator::Filter::files)->next());
    FolderIdentity real;
    FolderIdentity linked;
    ASSERT_TRUE(identifyFolder(folder.path("d.tvp"), real) && identifyFolder(folder.path("e"), linked));
    EXPECT_EQ(real, linked);
}

TEST(Resources, AreFoundWithoutRegardToCaseOrExtension) {
    setEmbeddedResources(resources);
    EXPECT_TRUE(resourceExists("PresetMap_x_1.tvpresetmap"));
    EXPECT_FALSE(resourceExists("PresetMap_x_2.tvpresetmap"));
    BinaryResourceReader reader("PresetMap_x_1.tvpresetmap");
    EXPECT_EQ(reader.readSignature(), "PMap");
    try {
        openResource("none");
        ADD_FAILURE();
    } catch (const EResource& missing) {
        EXPECT_STREQ(missing.what(), "Resource not found");
    }
}

} // namespace
