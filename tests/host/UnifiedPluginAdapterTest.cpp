// What MIDI does on the editor side: the controller map that all instances share, and program changes that load
// presets.
#include "framework/AbstractPluginParameter.h"
#include "framework/PluginSettings.h"
#include "host/ClapPluginAdapter.h"
#include "state/GenericStatefulPlugin.h"
#include "tests/support/ClapTestHost.h"
#include "tests/support/TemporaryHome.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

const std::string mapFile = ".local/share/Tessivane/Zelk 3/MidiControllerMap.tvm";

struct Destroy {
    void operator()(ClapPluginAdapter* adapter) const { adapter->clapPlugin()->destroy(adapter->clapPlugin()); }
};
using Instance = std::unique_ptr<ClapPluginAdapter, Destroy>;

class Ear final : public GenericPlugin::Listener {
public:
    void pluginEvent(std::int32_t code, std::int32_t argument) override { heard.push_back({code, argument}); }
    std::vector<std::pair<std::int32_t, std::int32_t>> heard;
};

class UnifiedPluginAdapterTest : public testing::Test {
protected:
    Instance create() {
        static constexpr clap_plugin_descriptor descriptor{};
        Instance instance(new ClapPluginAdapter(host.host, descriptor));
        EXPECT_TRUE(instance->init());
        return instance;
    }

    static void send(ClapPluginAdapter& instance, std::vector<std::array<std::uint8_t, 3>> messages) {
        ClapTestEvents events;
        for (const auto& bytes : messages)
            events.addMidi(0, bytes[0], bytes[1], bytes[2]);
        clap_process block{};
        block.frames_count = 16;
        block.in_events = events.list();
        ASSERT_TRUE(instance.activate(48000.0, 16) && instance.startProcessing());
        EXPECT_EQ(instance.process(block), CLAP_PROCESS_CONTINUE);
        instance.stopProcessing();
        instance.deactivate();
        instance.onMainThread();
    }

    const TemporaryHome home;
    ClapTestHost host;
};

TEST_F(UnifiedPluginAdapterTest, InstancesShareOneControllerMapAndTheLastOneSavesWhatChanged) {
    {
        const Instance first = create();
        const Instance second = create();
        Ear ear;
        second->editorSide().setListener(&ear);
        first->editorSide().controllerMapping().assign(74, 3);
        EXPECT_EQ(first->audioSide().controllerMapping().target(74), 3);
        EXPECT_EQ(second->audioSide().controllerMapping().target(74), 3);
        EXPECT_EQ(ear.heard, (decltype(ear.heard){{GenericPlugin::eventControllerMap, 0}}));
        second->editorSide().controllerMapping().assign(20, 3); // takes the target from 74
        ASSERT_TRUE(second->selectLayout(0));                   // an audio side of its own, younger than the map
        const Instance third = create();
        for (const auto* const instance : {&first, &second, &third}) {
            EXPECT_EQ((*instance)->audioSide().controllerMapping().target(20), 3);
            EXPECT_EQ((*instance)->audioSide().controllerMapping().target(74), ControllerMapping::none);
        }
        send(*second, {{0xB7, 20, 1}});
        const auto times = [&](std::int32_t code, std::int32_t argument) {
            return std::count(ear.heard.begin(), ear.heard.end(), std::pair{code, argument});
        };
        EXPECT_EQ(times(GenericPlugin::eventMidi, 20), 1);
        EXPECT_EQ(times(GenericPlugin::eventParameter, 3), 1) << "the editor side follows the controller";
        EXPECT_EQ(second->editorSide().parameter(3).value(), second->audioSide().parameter(3).value());
        second->editorSide().setListener(nullptr);
        EXPECT_EQ(home.read(mapFile), "");
    }
    EXPECT_EQ(home.read(mapFile).size(), 520u);
    const Instance later = create();
    EXPECT_EQ(later->audioSide().controllerMapping().target(20), 3);
    EXPECT_FALSE(later->editorSide().controllerMapping().modified);
    // What the menu does: revert, clear, factory, save.
    ControllerMapping& mapping = later->editorSide().controllerMapping();
    mapping.assign(500, 1); // no such controller
    mapping.set(1, 1);
    EXPECT_TRUE(later->editorSide().loadControllerMap());
    EXPECT_EQ(mapping.target(1), ControllerMapping::none);
    later->editorSide().loadFactoryControllerMap();
    EXPECT_EQ(later->audioSide().controllerMapping().target(20), ControllerMapping::none);
    home.write(mapFile, "no map");
    EXPECT_FALSE(later->editorSide().loadControllerMap());
    later->editorSide().saveControllerMap();
    EXPECT_TRUE(later->editorSide().loadControllerMap());
}

TEST_F(UnifiedPluginAdapterTest, ProgramChangesLoadThePresetOfBankAndProgramWhenTheyAreEnabled) {
    const Instance instance = create();
    auto& plugin = dynamic_cast<GenericStatefulPlugin&>(instance->editorSide());
    const std::string folder = home.path("numbered/");
    ASSERT_TRUE(plugin.savePresetFile(folder + "0.tvp"));
    for (int number = 1; number < 300; ++number)
        std::filesystem::copy_file(folder + "0.tvp", folder + std::to_string(number) + ".tvp");
    ASSERT_TRUE(plugin.setPresetFolder(folder));
    const auto nameAt = [&](std::size_t index) { return plugin.presetManager().allPresets().at(index)->name; };
    ASSERT_EQ(plugin.presetManager().allPresets().size(), 300u);
    const std::string before = plugin.currentPreset().name();

    send(*instance, {{0xC0, 7, 0}});
    EXPECT_EQ(plugin.currentPreset().name(), before) << "not enabled";
    plugin.sharedSettings().enableProgramChanges = true;
    send(*instance, {{0xC5, 7, 0}});
    EXPECT_EQ(plugin.currentPreset().name(), nameAt(7));
    send(*instance, {{0xB5, 32, 1}, {0xC5, 9, 0}});
    EXPECT_EQ(plugin.currentPreset().name(), nameAt(137));
    send(*instance, {{0xB5, 32, 2}});
    send(*instance, {{0xC5, 43, 0}, {0xB5, 0, 1}, {0xC5, 0, 0}}); // the last lies beyond the list
    EXPECT_EQ(plugin.currentPreset().name(), nameAt(299));
    EXPECT_EQ(host.flushRequests, 3);
}

} // namespace
