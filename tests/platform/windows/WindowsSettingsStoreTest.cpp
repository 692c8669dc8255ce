#include "platform/SettingsStore.h"

#include "platform/windows/RegistryKey.h"
#include "platform/windows/WindowsText.h"
#include "tests/support/TemporaryHome.h"

#include <gtest/gtest.h>

#include <cstring>
#include <thread>

namespace {

const SettingsKey key{SettingsKey::Root::user, "Tessivane/Thing/1.0"};

class WindowsSettingsStore : public testing::Test {
protected:
    WindowsSettingsStore() {
        RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\Tessivane\\Thing\\1.0", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                        &raw, nullptr);
    }
    ~WindowsSettingsStore() override { RegCloseKey(raw); }

    void put(const wchar_t* name, DWORD kind, const void* data, std::size_t size) const {
        ASSERT_EQ(RegSetValueExW(raw, name, 0, kind, static_cast<const BYTE*>(data), static_cast<DWORD>(size)),
                  ERROR_SUCCESS);
    }

    const TemporaryHome home;
    HKEY raw = nullptr;
};

TEST_F(WindowsSettingsStore, ValuesStandInTheRegistryInTheirKindsAsOtherProgramsReadThem) {
    ASSERT_TRUE(writeSettings(key, {{"Whole", -2},
                                    {"Text", std::string("\xC3\x9C"
                                                         "b")},
                                    {"Bytes", SettingBytes{1, 0}}}));
    DWORD kind = 0;
    BYTE data[16] = {};
    DWORD size = sizeof data;
    ASSERT_EQ(RegQueryValueExW(raw, L"Whole", nullptr, &kind, data, &size), ERROR_SUCCESS);
    EXPECT_TRUE(kind == REG_DWORD && size == 4u && data[0] == 0xFE && data[3] == 0xFF);
    size = sizeof data;
    ASSERT_EQ(RegQueryValueExW(raw, L"Text", nullptr, &kind, data, &size), ERROR_SUCCESS);
    EXPECT_TRUE(kind == REG_SZ && size == 6u) << "with its closing zero";
    EXPECT_EQ(std::memcmp(data, L"\u00DCb", 6), 0);
    size = sizeof data;
    ASSERT_EQ(RegQueryValueExW(raw, L"Bytes", nullptr, &kind, data, &size), ERROR_SUCCESS);
    EXPECT_TRUE(kind == REG_BINARY && size == 2u);
    EXPECT_FALSE(settingsExist({SettingsKey::Root::machine, "Tessivane/Thing/1.0"}));
}

TEST_F(WindowsSettingsStore, WhatOtherProgramsLeftIsTakenByItsKindOrNotAtAll) {
    const std::wstring text = L"open";
    put(L"NoZero", REG_SZ, text.data(), 8);
    put(L"Odd", REG_SZ, text.data(), 7);
    put(L"Nothing", REG_SZ, nullptr, 0);
    put(L"Expand", REG_EXPAND_SZ, L"%x%", 8);
    put(L"Short", REG_DWORD, "\1\2", 2);
    put(L"Wide", REG_QWORD, "\1\2\3\4\5\6\7\10", 8);
    const std::string large(300000, 'x');
    put(L"Large", REG_BINARY, large.data(), large.size());
    put(L"", REG_SZ, L"the key's own", 28);
    const SettingValues values = readSettings(key);
    EXPECT_EQ(values.at("NoZero"), SettingValue(std::string("open")));
    EXPECT_EQ(values.at("Odd"), SettingValue(std::string("ope")));
    EXPECT_EQ(values.at("Nothing"), SettingValue(std::string()));
    EXPECT_EQ(std::get<SettingBytes>(values.at("Large")).size(), large.size());
    for (const char* const foreign : {"Expand", "Short", "Wide"})
        EXPECT_EQ(values.count(foreign), 0u) << foreign;
}

TEST_F(WindowsSettingsStore, WritersAtOnceLoseNothingOfOneAnother) {
    std::vector<std::thread> writers;
    for (int writer = 0; writer < 3; ++writer)
        writers.emplace_back([writer] {
            for (int round = 0; round < 20; ++round)
                EXPECT_TRUE(writeSettings(key, {{"Own" + std::to_string(writer * 20 + round), round}}));
        });
    for (std::thread& writer : writers)
        writer.join();
    EXPECT_EQ(readSettings(key).size(), 60u);
}

TEST(WindowsText, BrokenTextAndLongPathsGoTheirWay) {
    EXPECT_EQ(wideText("a\xFF"
                       "b"),
              L"a\uFFFDb");
    EXPECT_EQ(utf8Text(std::wstring(L"\xD800", 1)), "\xEF\xBF\xBD");
    EXPECT_EQ(utf8Text(wideText("\xF0\x9F\x8E\x9A")), "\xF0\x9F\x8E\x9A");
    EXPECT_EQ(widePath("C:\\short/x"), L"C:\\short/x");
    const std::string name(230, 'n');
    EXPECT_EQ(widePath("C:\\a/../b/" + name), L"\\\\?\\C:\\b\\" + wideText(name));
    EXPECT_EQ(widePath("\\\\server\\share\\" + name), L"\\\\?\\UNC\\server\\share\\" + wideText(name));
}

} // namespace
