#include "framework/GenericPlugin.h"
#include "framework/PluginSettings.h"
#include "framework/RegistryReader.h"
#include "framework/RegistryWriter.h"
#include "framework/SettingsKeys.h"
#include "tests/support/TemporaryHome.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace {

const VersionInfo product("Thing");
const SettingsKey key = productSettingsKey(product);
const std::string file = ".config/Tessivane/Thing/3.0.conf";

class SettingsTest : public testing::Test {
protected:
    static void store(const SettingValues& values) { ASSERT_TRUE(writeSettings(key, values)); }

    const TemporaryHome home;
};

class TestPlugin final : public GenericPlugin {
public:
    TestPlugin() {
        info.productName = "Thing";
        init();
    }
    ~TestPlugin() override { end(); }

    bool canResize() const noexcept override { return true; }
    std::span<const InterfaceSize> interfaceSizes() const noexcept override { return sizes; }

    std::vector<std::string> presetFolders; // as told
    std::vector<bool> installs;             // whether over files that stand there
    static inline bool treeHasPresets = true;

protected:
    void presetFolderChanged(const std::string& folder) override { presetFolders.push_back(folder); }
    bool hasPresets() const override { return treeHasPresets; }
    bool installFactoryPresets(bool overwrite) override {
        installs.push_back(overwrite);
        return true;
    }

private:
    static constexpr InterfaceSize sizes[] = {{720, 335}, {700, 400}, {900, 540}, {1040, 624}, {1200, 720}};
};

TEST_F(SettingsTest, AReaderGivesWhatAWriterStoredAndTheStandardForAnyOtherKind) {
    {
        RegistryWriter writer(key);
        std::string text;
        SettingBytes bytes{1, 2};
        EXPECT_TRUE(writer.isWriter());
        EXPECT_EQ(writer.intValue("Int", -5, 9), -5);
        EXPECT_TRUE(writer.boolValue("Bool", true, false));
        EXPECT_EQ(writer.floatValue("Float", 0.1f, 1.0f), 0.1f);
        writer.stringValue(text, "Text", "\xC3\xA9", "standard");
        EXPECT_EQ(text, "\xC3\xA9");
        writer.blobValue("Blob", bytes);
        EXPECT_FALSE(settingsExist(key)) << "all in one pass, at the end";
    }
    RegistryReader reader(key);
    std::string text;
    SettingBytes bytes{9};
    EXPECT_EQ(reader.intValue("Int", 0, 9), -5);
    EXPECT_TRUE(reader.boolValue("Bool", false, false));
    EXPECT_EQ(reader.floatValue("Float", 0.0f, 1.0f), 0.1f);
    reader.stringValue(text, "Text", "", "standard");
    EXPECT_EQ(text, "\xC3\xA9");
    reader.blobValue("Blob", bytes);
    EXPECT_EQ(bytes, (SettingBytes{1, 2}));

    EXPECT_EQ(reader.intValue("Text", 0, 9), 9);
    EXPECT_TRUE(reader.boolValue("Absent", false, true));
    EXPECT_EQ(reader.floatValue("Int", 0.0f, 1.5f), 1.5f);
    reader.stringValue(text, "Blob", "", "standard");
    EXPECT_EQ(text, "standard");
    reader.blobValue("Int", bytes);
    EXPECT_TRUE(bytes.empty());
    for (const char* const foreign : {"1.5 x", "", "nan", "1e999", " 1"}) {
        store({{"Float", std::string(foreign)}});
        EXPECT_EQ(RegistryReader(key).floatValue("Float", 0.0f, 2.5f), 2.5f) << foreign;
    }
}

TEST_F(SettingsTest, AChangeStoresAllOfItsObjectButNotWhileItIsReadOrHeld) {
    SharedPluginSettings shared(product);
    shared.showInteractiveHelp = false;
    EXPECT_FALSE(settingsExist(key)) << "not alive";
    shared.alive = true;
    EXPECT_FALSE(settingsExist(key));
    shared.showInteractiveHelp = false;
    EXPECT_FALSE(settingsExist(key)) << "the value it had";
    int heard = 0;
    shared.retinaEnabled.changed.add(
        std::make_unique<NotifyEvent::HandlerImplFunc<std::function<void()>>>([&] { ++heard; }));
    {
        const UpdatedObject::Hold hold(shared);
        shared.retinaEnabled = 150;
        shared.showWelcomeHint = true;
        EXPECT_FALSE(settingsExist(key)) << "held";
    }
    const SettingValues stored = readSettings(key);
    EXPECT_EQ(stored.size(), 7u);
    EXPECT_EQ(stored.at("RetinaEnabled"), SettingValue(150));
    EXPECT_EQ(stored.at("showInteractiveHelp"), SettingValue(0));
    EXPECT_EQ(heard, 1);
}

TEST_F(SettingsTest, ValuesFromOutsideTheirRangeAreClampedAndWrongKindsAreStandards) {
    const auto layoutFor = [](const SettingValue& stored) {
        store({{"InterfaceLayout", stored}, {"InterfaceWidth", 10}, {"InterfaceHeight", 99999}});
        TestPlugin plugin;
        EXPECT_EQ(plugin.settings().interfaceWidth.get(), 700) << "the smallest width of all rows";
        EXPECT_EQ(plugin.settings().interfaceHeight.get(), 12000);
        return plugin.settings().interfaceLayout.get();
    };
    EXPECT_EQ(layoutFor(9), 4);
    EXPECT_EQ(layoutFor(-7), -1);
    EXPECT_EQ(layoutFor(std::string("3")), 2);
    EXPECT_EQ(readSettings(key).count("InterfacePanels"), 0u) << "there are no panels";

    TestPlugin plugin;
    EXPECT_EQ(plugin.interfaceWidth(), 900);
    EXPECT_EQ(plugin.maxHeight(), 720);
    plugin.settings().interfaceWidth = 2000;
    plugin.settings().interfaceLayout = -1;
    EXPECT_EQ(plugin.interfaceWidth(), 2000);
    EXPECT_EQ(plugin.interfaceHeight(), 12000);
    EXPECT_EQ(plugin.maxWidth(), 2000);
}

TEST_F(SettingsTest, TheMakersValuesGoOverThoseOfTheProduct) {
    const auto scaleFor = [](std::int32_t retina) {
        store({{"RetinaEnabled", retina}});
        TestPlugin plugin;
        return plugin.sharedSettings().fixedScale();
    };
    EXPECT_EQ(scaleFor(1), 0.0f);
    EXPECT_EQ(scaleFor(0), 1.0f);
    EXPECT_EQ(scaleFor(150), 1.5f);
    EXPECT_EQ(scaleFor(400), 3.0f);
    ASSERT_TRUE(writeSettings(makerSettingsKey(), {{"RetinaEnabled", 200}, {"GraphicsAcceleration", 0}}));
    EXPECT_EQ(scaleFor(150), 2.0f);
    TestPlugin plugin;
    EXPECT_EQ(plugin.sharedSettings().graphicsMode(), 0);
    EXPECT_EQ(plugin.sharedSettings().graphicsAcceleration.get(), 1) << "the product's own stays as it is";
}

TEST_F(SettingsTest, TheFirstStartOfAVersionWritesEveryKeyAndInstallsWhatBelongsToIt) {
    {
        TestPlugin plugin;
        EXPECT_EQ(plugin.installs, std::vector<bool>{false});
        EXPECT_TRUE(plugin.sharedSettings().showWelcomeHint);
        plugin.sharedSettings().showWelcomeHint = false; // as the interface does when it has shown it
    }
    const SettingValues stored = readSettings(key);
    EXPECT_EQ(stored.at("LastVersion"), SettingValue(VersionInfo::versionText()));
    EXPECT_EQ(stored.at("PresetFolder"), SettingValue(home.path("Documents/Tessivane/Presets/Thing 3/")));
    EXPECT_EQ(stored.size(), 7u + 4u + 2u);
    {
        TestPlugin second;
        EXPECT_TRUE(second.installs.empty());
        EXPECT_FALSE(second.sharedSettings().showWelcomeHint);
    }
    store({{"LastVersion", std::string("3.0")}});
    EXPECT_EQ(TestPlugin().installs, std::vector<bool>{true});
    TestPlugin::treeHasPresets = false;
    EXPECT_EQ(TestPlugin().installs, std::vector<bool>{true}) << "the same version, but no presets";
    TestPlugin::treeHasPresets = true;
}

TEST_F(SettingsTest, AnOlderVersionsKeyTellsOfAnEarlierInstallation) {
    const SettingValues old{{"PresetFolder", std::string("/old")}};
    ASSERT_TRUE(writeSettings(productSettingsKey(product, 1), old));
    EXPECT_EQ(TestPlugin().installs, std::vector<bool>{true});
    EXPECT_EQ(readSettings(productSettingsKey(product, 1)), old) << "only read";
}

TEST_F(SettingsTest, APresetFolderThatIsGoneFallsBackToTheStandard) {
    const std::string standard = home.path("Documents/Tessivane/Presets/Thing 3/");
    store({{"PresetFolder", home.path("gone")}, {"LastVersion", VersionInfo::versionText()}});
    EXPECT_EQ(TestPlugin().presetFolders, std::vector<std::string>{standard});
    home.write("mine/a preset", "x");
    store({{"PresetFolder", home.path("mine")}});
    TestPlugin first;
    EXPECT_EQ(first.presetFolders, std::vector<std::string>{home.path("mine/")});
    TestPlugin second;
    EXPECT_TRUE(second.presetFolders.empty()) << "the same folder is not scanned again";
}

TEST_F(SettingsTest, AFurtherInstanceTakesAnotherProcesssChangesAndWritesNoneBack) {
    auto first = std::make_unique<TestPlugin>();
    store({{"RetinaEnabled", 200}, {"ShowComponentDisplays", 0}});
    // Where settings are a file: a replaced one would no longer be the one that the second name leads to.
    const bool isFile = std::filesystem::exists(home.path(file));
    if (isFile)
        std::filesystem::create_hard_link(home.path(file), home.path("second name"));
    TestPlugin second;
    EXPECT_TRUE(!isFile || std::filesystem::hard_link_count(home.path(file)) == 2u);
    EXPECT_EQ(first->sharedSettings().retinaEnabled.get(), 200);
    EXPECT_EQ(&first->sharedSettings(), &second.sharedSettings());
    first.reset(); // what they share does not need the one that made it
    second.sharedSettings().presetBrowserTypeToSearch = false;
    EXPECT_EQ(readSettings(key).at("ShowComponentDisplays"), SettingValue(0));
    EXPECT_EQ(readSettings(key).at("PresetBrowserTypeToSearch"), SettingValue(0));
}

} // namespace
