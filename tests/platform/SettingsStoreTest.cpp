#include "platform/SettingsStore.h"

#include "platform/SettingsText.h"
#include "tests/support/TemporaryHome.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

namespace {

const SettingsKey key{SettingsKey::Root::user, "Maker/Thing/1.0"};

SettingValues everyKind() {
    return {{"Whole", -2147483647 - 1},
            {"Bytes", SettingBytes{0, 255, 10}},
            {"NoBytes", SettingBytes{}},
            {"Empty", std::string()},
            {"Path # with blanks", std::string("/home/\xC3\xA9 \"x\"\\y\n[z]\r\0 end", 22)}};
}

TEST(SettingsStore, EveryKindComesBackAndOtherNamesStay) {
    const TemporaryHome home;
    EXPECT_FALSE(settingsExist(key));
    EXPECT_TRUE(readSettings(key).empty());
    SettingValues wanted = everyKind();
    ASSERT_TRUE(writeSettings(key, wanted));
    EXPECT_EQ(readSettings(key), wanted);
    ASSERT_TRUE(writeSettings(key, {{"Whole", std::string("now a text")}, {"New", 5}}));
    wanted["Whole"] = std::string("now a text");
    wanted["New"] = 5;
    EXPECT_EQ(readSettings(key), wanted);
    EXPECT_TRUE(settingsExist(key));
    // A name that the form cannot hold is left out, and takes nothing else with it.
    ASSERT_TRUE(writeSettings(key, {{"a=b", 1}, {"#", 2}, {"", 3}, {"line\nend", 4}}));
    EXPECT_EQ(readSettings(key), wanted);
    // The maker's own values stand beside those of its products.
    const SettingsKey maker{SettingsKey::Root::user, "Maker"};
    EXPECT_TRUE(readSettings(maker).empty());
    ASSERT_TRUE(writeSettings(maker, {{"A", 1}}));
    EXPECT_EQ(readSettings(maker), (SettingValues{{"A", 1}}));
    EXPECT_EQ(readSettings(key), wanted);
    EXPECT_FALSE(writeSettings({SettingsKey::Root::user, ""}, {{"A", 1}}));
}

TEST(SettingsStore, AFileThatLostItsEndGivesNothingRatherThanAPart) {
    const SettingValues wanted = everyKind();
    const std::string text = settingsToText(wanted);
    for (std::size_t length = 0; length < text.size(); ++length)
        EXPECT_TRUE(settingsFromText(std::string_view(text).substr(0, length)).empty()) << length;
    EXPECT_EQ(settingsFromText(text), wanted);
}

TEST(SettingsStore, WhatAPersonWritesIsReadLineByLine) {
    const SettingValues values = settingsFromText("# mine\r\nA=dword:7\r\nB=text:\"x\"\n\nC=dword:1x\nD=text:\"open\n"
                                                  "E=dword:99999999999\nF=binary:0g\nG=colour:red\nH\nI=binary:0\n"
                                                  "J=text:\"a\"b\nK=text:\"\\xZZ\"\nL=dword:3\nM=dword:4");
    EXPECT_EQ(values, (SettingValues{{"A", 7}, {"B", std::string("x")}, {"L", 3}}));
}

TEST(SettingsStore, RandomBytesNeverDoHarm) {
    const char* const given = std::getenv("SEED");
    const unsigned seed = given != nullptr ? static_cast<unsigned>(std::atoi(given)) : std::random_device()();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const std::string whole = settingsToText(everyKind());
    for (int round = 0; round < 2000; ++round) {
        std::string text = round % 2 == 0 ? whole : std::string(random() % 300, ' ');
        for (int changes = round % 2 == 0 ? 1 + round % 7 : static_cast<int>(text.size()); changes > 0; --changes)
            if (!text.empty())
                text[random() % text.size()] = static_cast<char>(random());
        for (const auto& [name, value] : settingsFromText(text))
            ASSERT_TRUE(isSettingName(name));
    }
}

} // namespace
