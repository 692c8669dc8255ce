#include "platform/Files.h"

#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

TEST(Files, ReplacesAllOrNothingWhenTheDiskIsFull) {
    const TestFolder folder;
    const std::string path = folder.path("kept.tvp");
    ASSERT_TRUE(replaceFile(path, "the old content"));
    std::filesystem::create_symlink(path, folder.path("link"));
    std::filesystem::permissions(path, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);

    {
        const SavingFails fullDisk(path, 1000);
        EXPECT_FALSE(replaceFile(path, std::string(5000, 'n')));
    }
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

} // namespace
