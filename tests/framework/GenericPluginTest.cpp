#include "framework/GenericPlugin.h"

#include "framework/FloatPluginParameter.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using Events = std::vector<std::pair<std::int32_t, std::int32_t>>;

class TestPlugin final : public GenericPlugin {
public:
    explicit TestPlugin(const std::string& name = "Test") {
        info.productName = name;
        info.capabilities = GenericPluginInfo::instanceNames;
        init();
    }
    ~TestPlugin() override { end(); }

    FloatPluginParameter first{this, "First"};
    FloatPluginParameter second{this, "Second"};
    FloatPluginParameter third{this, "Third"};
    std::vector<std::int32_t> latencyTests;

protected:
    void afterParameterChange(std::int32_t id) override { latencyTests.push_back(id); }
};

// Records what the editor side sends, and stands for the audio side.
class RecordingAdapter final : public GenericPlugin::Adapter, public GenericPlugin::Listener {
public:
    explicit RecordingAdapter(GenericPlugin& bound) : plugin(bound) {
        plugin.setAdapter(this);
        plugin.setListener(this);
    }
    ~RecordingAdapter() override {
        plugin.setListener(nullptr);
        plugin.setAdapter(nullptr);
    }

    void syncControllerMapping() override {}
    void latencyChanged() override {}
    void sendMidiToProcessor(const MidiMessage&) override {}
    void sendParameterToHost(std::int32_t id) override { sent.push_back(id); }
    void stateChanged(std::int32_t kind) override { states.push_back(kind); }
    void exchangeSources() override {}
    void setProcessorValue(std::int32_t, float) override {}
    void postParameterValue(std::int32_t, float) noexcept override {}
    float processorValue(std::int32_t id) const noexcept override {
        return processorValues[static_cast<std::size_t>(id)];
    }
    void pluginEvent(std::int32_t code, std::int32_t argument) override { events.emplace_back(code, argument); }

    GenericPlugin& plugin;
    std::vector<std::int32_t> sent;
    std::vector<std::int32_t> states;
    Events events;
    std::vector<float> processorValues{0.0f, 0.0f, 0.0f};
};

constexpr std::uint32_t silent = GenericParameterOwner::silent;

TEST(GenericPlugin, ABatchOfSilentChangesTellsTheListenerOnceAndTheAdapterNothing) {
    TestPlugin plugin;
    RecordingAdapter adapter(plugin);
    plugin.beginChange();
    plugin.beginChange();
    plugin.first.setValue(0.5f, silent);
    plugin.second.setValue(0.5f, silent);
    plugin.endChange();
    EXPECT_TRUE(adapter.events.empty()) << "only the outermost bracket acts";
    plugin.endChange();
    EXPECT_EQ(adapter.events, (Events{{GenericPlugin::eventParameter, -1}}));
    EXPECT_TRUE(adapter.sent.empty());
    EXPECT_EQ(plugin.latencyTests, std::vector<std::int32_t>{-1}) << "once, for the whole batch";
    EXPECT_TRUE(plugin.currentPreset().modified());
}

TEST(GenericPlugin, ABatchWithOneLoudChangeSendsAllValuesInItsWay) {
    TestPlugin plugin;
    RecordingAdapter adapter(plugin);
    plugin.beginChange();
    plugin.first.setValue(0.5f, silent);
    plugin.second.setValue(0.5f, 0);
    plugin.third.setValue(0.5f, silent);
    plugin.markReset();
    plugin.markJump(); // a jump does not weaken a reset
    plugin.endChange();
    EXPECT_EQ(adapter.sent, std::vector<std::int32_t>{GenericPlugin::allValuesWithReset});
    plugin.beginChange();
    plugin.markJump();
    plugin.endChange(); // nothing changed: the jump must not stay behind
    plugin.beginChange();
    plugin.first.setValue(0.25f, 0);
    plugin.endChange();
    EXPECT_EQ(adapter.sent.back(), GenericPlugin::allValuesSmoothed);
}

TEST(GenericPlugin, WhatTheAudioThreadMovedArrivesOnTheMainThreadSilently) {
    TestPlugin plugin;
    RecordingAdapter adapter(plugin);
    std::thread audio([&] {
        plugin.automate(0, 0.75f);
        plugin.automate(0, 0.5f);
        plugin.followProcessor(2);
    });
    audio.join();
    EXPECT_EQ(plugin.first.get(), 0.5f) << "the value stands at once";
    EXPECT_TRUE(adapter.events.empty());
    adapter.processorValues = {0.5f, 0.0f, 0.125f};
    plugin.drain();
    EXPECT_EQ(adapter.events, (Events{{GenericPlugin::eventParameter, 0}, {GenericPlugin::eventParameter, 2}}));
    EXPECT_EQ(plugin.third.get(), 0.125f);
    EXPECT_TRUE(adapter.sent.empty());
    EXPECT_TRUE(plugin.currentPreset().modified());

    // The set is also emptied before a batch begins, and leaves the kind of an open bracket alone.
    plugin.followProcessor(1);
    adapter.processorValues[1] = 0.5f;
    plugin.beginChange();
    EXPECT_EQ(plugin.second.get(), 0.5f);
    adapter.events.clear();
    plugin.endChange();
    EXPECT_TRUE(adapter.events.empty());
}

TEST(GenericPlugin, InstancesAreNamedApartAndAFreedNameIsTakenAgain) {
    auto first = std::make_unique<TestPlugin>("Zelk");
    TestPlugin second("Zelk");
    EXPECT_EQ(first->instanceName(), "Zelk");
    EXPECT_EQ(second.instanceName(), "Zelk (2)");
    first.reset();
    EXPECT_EQ(second.instanceName(), "Zelk (2)");
    TestPlugin third("Zelk");
    EXPECT_EQ(third.instanceName(), "Zelk");

    RecordingAdapter adapter(third);
    third.setInstanceName("Voice");
    EXPECT_EQ(adapter.states, std::vector<std::int32_t>{GenericPlugin::instanceNamed});
    third.setInstanceName("Voice");
    EXPECT_EQ(adapter.states.size(), 1u);
    third.setInstanceName("");
    EXPECT_EQ(third.instanceName(), "Zelk");
    EXPECT_NE(third.instanceId(), second.instanceId());
    EXPECT_EQ(third.instanceId(), third.instanceId());
}

} // namespace
