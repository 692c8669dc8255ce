#include "platform/SettingsStore.h"

#include "tests/support/TemporaryHome.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

const SettingsKey key{SettingsKey::Root::user, "Maker/Thing/1.0"};
const std::string file = ".config/Maker/Thing/1.0.conf";

TEST(PosixSettingsStore, APlaceThatCannotBeUsedGivesNothingAndTakesNothing) {
    {
        const TemporaryHome home;
        home.write(".config", "a file where the folder should be");
        EXPECT_FALSE(writeSettings(key, {{"A", 1}}));
        EXPECT_TRUE(readSettings(key).empty());
    }
    const TemporaryHome home;
    home.write(file + "/inside", "the file is a folder");
    EXPECT_FALSE(writeSettings(key, {{"A", 1}}));
    EXPECT_TRUE(readSettings(key).empty());
    EXPECT_FALSE(settingsExist(key));
    std::filesystem::remove_all(home.path(file));
    home.write(file, std::string(std::size_t{2} << 20, 'x')); // no settings of ours are that long
    EXPECT_TRUE(readSettings(key).empty());
    if (geteuid() != 0) { // whom no rights hold back
        std::filesystem::permissions(home.path(".config/Maker/Thing"),
                                     std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
        EXPECT_FALSE(writeSettings(key, {{"A", 1}}));
    }
}

TEST(PosixSettingsStore, WritersOfSeveralProcessesLoseNothingAndAReaderSeesOnlyWholeSets) {
    const TemporaryHome home;
    constexpr int writers = 4;
    constexpr int rounds = 12;
    std::vector<pid_t> children;
    for (int writer = 0; writer < writers; ++writer) {
        const pid_t child = fork();
        if (child == 0) {
            bool stored = true;
            for (int round = 0; round < rounds; ++round)
                stored = writeSettings(key, {{"Own" + std::to_string(writer * rounds + round), round},
                                             {"First", writer * rounds + round},
                                             {"Second", std::string(3000, 'x')},
                                             {"Third", writer * rounds + round}}) &&
                         stored;
            _exit(stored ? 0 : 1);
        }
        ASSERT_GT(child, 0);
        children.push_back(child);
    }
    for (int seen = 0; seen < 200; ++seen) {
        const SettingValues values = readSettings(key);
        if (values.empty())
            continue;
        ASSERT_EQ(values.at("First"), values.at("Third"));
        ASSERT_EQ(values.at("Second"), SettingValue(std::string(3000, 'x')));
    }
    for (const pid_t child : children) {
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0) << "a write failed";
    }
    EXPECT_EQ(readSettings(key).size(), static_cast<std::size_t>(writers * rounds + 3));
    for (const auto& entry : std::filesystem::directory_iterator(home.path(".config/Maker/Thing")))
        EXPECT_TRUE(entry.path().extension() == ".conf" || entry.path().extension() == ".lock") << entry.path();
}

} // namespace
