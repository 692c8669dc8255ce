#include "platform/Files.h"
#include "platform/BinaryFiles.h"
#include "platform/FileEnumerator.h"
#include "platform/Folders.h"
#include "platform/Paths.h"
#include "platform/Resources.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <set>
#include <string>

namespace {

constexpr EmbeddedResource resources[] = {{"PRESETMAP_X_1", "PMap"}};

TEST(Paths, JoinAndCutAtTheLastSeparatorAndTheLastPoint) {
    const std::string joined = nativePath("/a/b");
    EXPECT_EQ(appendPath(nativePath("/a"), "b"), joined);
    EXPECT_EQ(appendPath(nativePath("/a/"), nativePath("/b")), joined);
    EXPECT_EQ(fileNameOf(nativePath("/a/b.c.d")), "b.c.d");
    EXPECT_EQ(fileNameOf("b"), "b");
    EXPECT_EQ(folderOf(joined), nativePath("/a/"));
    EXPECT_EQ(folderOf("b"), "");
    EXPECT_EQ(stripExtension("b.c.d"), "b.c");
    EXPECT_EQ(insertScaleSuffix("Knob.png"), "Knob_2x.png");
    EXPECT_EQ(insertScaleSuffix("Knob"), "Knob_2x");
}

TEST(Files, FoldersAreMadeWithTheirParentsAndNeverOverAFile) {
    const TestFolder folder;
    const std::string deep = folder.path("one/two/three/");
    EXPECT_FALSE(directoryExists(deep));
    EXPECT_TRUE(createDirectories(deep));
    EXPECT_TRUE(directoryExists(deep));
    EXPECT_TRUE(createDirectories(deep)) << "it exists already";
    EXPECT_FALSE(fileExists(folder.path("one")));
    ASSERT_TRUE(replaceFile(folder.path("file"), "x"));
    EXPECT_TRUE(fileExists(folder.path("file")));
    EXPECT_FALSE(createDirectories(folder.path("file")));
    EXPECT_FALSE(createDirectories(folder.path("file/below")));
    EXPECT_FALSE(createDirectories(""));
    EXPECT_EQ(regularFileSize(folder.path("one")), -1);
    EXPECT_EQ(regularFileSize(folder.path("file")), 1);
    EXPECT_FALSE(openFile(folder.path("none"), std::ios::in | std::ios::binary)->good());
}

TEST(Files, AreReplacedWholeByAnyNameAndAtLongPaths) {
    const TestFolder folder;
    const std::string name = "\xC3\x9Cn\xC3\xAF"
                             "c\xC3\xB8"
                             "d\xC3\xA9 \xE3\x83\x97\xE3\x83\xAA\xE3\x82\xBB\xE3\x83\x83\xE3\x83\x88";
    std::string deep = folder.path(name);
    while (deep.size() < 240)
        deep = appendPath(deep, std::string(std::min<std::size_t>(40, 239 - deep.size() % 240), 'x'));
    ASSERT_TRUE(createDirectories(deep));
    const std::string file = appendPath(deep, name + ".tvp");
    const std::string bytes("new\n\r\n\0\x1A end", 11);
    for (const std::string& content : {std::string("the old content"), bytes}) {
        ASSERT_TRUE(replaceFile(file, content));
        std::string read;
        ASSERT_TRUE(readFile(file, 100, read));
        EXPECT_EQ(read, content);
        EXPECT_FALSE(readFile(file, std::ssize(content) - 1, read));
    }
    const auto entries = enumerateFolder(deep, FileEnumerator::Filter::files);
    ASSERT_TRUE(entries->next());
    EXPECT_EQ(entries->name(), name + ".tvp");
    EXPECT_FALSE(entries->next()) << "something was left";
    ASSERT_TRUE(renameFile(file, appendPath(deep, "a")));
    EXPECT_FALSE(fileExists(file));
    EXPECT_TRUE(removeFile(appendPath(deep, "a")));
    EXPECT_TRUE(removeFile(appendPath(deep, "a"))) << "gone is gone";
}

TEST(FileEnumerator, ListsFilesByEndingWithoutRegardToCaseAndFoldersApart) {
    const TestFolder folder;
    const std::string odd = fileNamesAreBytes ? "\xFF.tvp" : "\xEF\xBF\xBD.tvp";
    const std::string foreign = "\xC3\x9Cn\xC3\xAF \xE3\x83\x97\xE3\x83\xAA.tvp";
    for (const std::string& name :
         {std::string("a.tvp"), std::string("b.TVP"), std::string("c.txt"), std::string("tvp"), odd, foreign})
        ASSERT_TRUE(replaceFile(folder.path(name), ""));
    ASSERT_TRUE(createDirectories(folder.path("d.tvp")));
    std::set<std::string> folders{"d.tvp"};
    if (linkFolder(folder.path("d.tvp"), folder.path("e")) &&
        linkFolder(folder.path("nowhere"), folder.path("dead.tvp")))
        folders.insert("e");
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
    EXPECT_EQ(names(FileEnumerator::Filter::files, ".tvp"), (std::set<std::string>{"a.tvp", "b.TVP", odd, foreign}));
    EXPECT_EQ(names(FileEnumerator::Filter::directories, ""), folders);
    EXPECT_FALSE(enumerateFolder(folder.path("none"), FileEnumerator::Filter::files)->next());
    FolderIdentity real;
    FolderIdentity same;
    const std::string otherWay = folders.count("e") != 0 ? "e" : "d.tvp/../d.tvp/";
    ASSERT_TRUE(identifyFolder(folder.path("d.tvp"), real) && identifyFolder(folder.path(otherWay), same));
    EXPECT_EQ(real, same);
    ASSERT_TRUE(identifyFolder(folder.path(""), same));
    EXPECT_NE(real, same);
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
