#include "midi/ControllerMapFile.h"

#include "framework/ControllerMapping.h"
#include "tests/support/TemporaryHome.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <string>

namespace {

class ControllerMapFileTest : public testing::Test {
protected:
    ControllerMapFileTest() {
        mapping.set(20, 5);
        mapping.set(127, ControllerMapping::firstControl + 14);
        mapping.changed.event.add(this, &ControllerMapFileTest::heard);
    }
    void heard() { ++notifications; }

    // What the table says, read from its file by another.
    std::int32_t stored(std::size_t controller) const {
        ControllerMapping fresh;
        EXPECT_TRUE(file.load(fresh));
        EXPECT_FALSE(fresh.modified);
        return fresh.target(controller);
    }

    const TemporaryHome home;
    const ControllerMapFile file{home.path("new/folder/")};
    const std::string name = "new/folder/MidiControllerMap.tvm";
    ControllerMapping mapping;
    int notifications = 0;
};

TEST_F(ControllerMapFileTest, ASavedMapIsLittleEndianAndComesBackWholeWithOneNotification) {
    EXPECT_TRUE(mapping.modified);
    ASSERT_TRUE(file.save(mapping));
    EXPECT_FALSE(mapping.modified);
    const std::string bytes = home.read(name);
    ASSERT_EQ(bytes.size(), 8u + 512u);
    EXPECT_EQ(bytes.substr(0, 8), std::string("TVCM\1\0\0\0", 8));
    EXPECT_EQ(bytes.substr(8 + 4 * 19, 8), std::string("\xFF\xFF\xFF\xFF\5\0\0\0", 8));
    EXPECT_EQ(bytes.substr(516), std::string("\x0E\0\1\0", 4));

    mapping.clear();
    mapping.set(64, 1);
    notifications = 0;
    ASSERT_TRUE(file.load(mapping));
    EXPECT_EQ(notifications, 1);
    EXPECT_FALSE(mapping.modified);
    EXPECT_EQ(mapping.target(20), 5);
    EXPECT_EQ(mapping.target(64), ControllerMapping::none);
    ASSERT_TRUE(file.load(mapping));
    EXPECT_EQ(notifications, 1) << "nothing was new";
    // Another version and bytes behind the table are nobody's concern.
    home.write(name, std::string("TVCM\7\0\0\0", 8) + bytes.substr(8) + "more");
    EXPECT_EQ(stored(20), 5);
}

TEST_F(ControllerMapFileTest, WhatIsNoMapLeavesTheTableAsItWas) {
    EXPECT_FALSE(file.load(mapping)) << "no file";
    ASSERT_TRUE(file.save(mapping));
    const std::string good = home.read(name);
    notifications = 0;
    mapping.set(3, 3);
    for (const std::string& bytes : {std::string(), std::string("TVC"), "TVCN" + good.substr(4), good.substr(0, 8),
                                     good.substr(0, good.size() - 1), std::string(520, '\xFF')}) {
        home.write(name, bytes);
        EXPECT_FALSE(file.load(mapping));
    }
    std::filesystem::remove(home.path(name));
    if (makePipe(home.path(name))) {
        EXPECT_FALSE(file.load(mapping)) << "a pipe";
        std::filesystem::remove(home.path(name));
    }
    std::filesystem::create_directory(home.path(name));
    EXPECT_FALSE(file.load(mapping)) << "a folder";
    EXPECT_FALSE(ControllerMapFile("").load(mapping));
    EXPECT_EQ(notifications, 1);
    EXPECT_EQ(mapping.target(20), 5);
    EXPECT_TRUE(mapping.modified);
}

TEST_F(ControllerMapFileTest, AFailedSaveKeepsTheOldFileAndTheChangeToBeSaved) {
    ASSERT_TRUE(file.save(mapping));
    mapping.set(20, 6);
    const std::filesystem::path folder = std::filesystem::path(home.path(name)).parent_path();
    {
        const SavingFails fullDisk(home.path(name), 300);
        EXPECT_FALSE(file.save(mapping));
    }
    EXPECT_TRUE(mapping.modified);
    EXPECT_EQ(stored(20), 5);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 1) << "nothing is left beside it";
    EXPECT_FALSE(ControllerMapFile("").save(mapping));
    ASSERT_TRUE(file.save(mapping));
    EXPECT_EQ(stored(20), 6);
}

} // namespace
