#include "tests/state/StateTestObjects.h"

#include <cstdlib>
#include <deque>
#include <iostream>
#include <random>

namespace {

class HostSpy final : public GenericPlugin::Adapter {
public:
    void syncControllerMapping() override {}
    void latencyChanged() override {}
    void sendMidiToProcessor(const MidiMessage&) override {}
    void sendParameterToHost(std::int32_t id) override { batches.push_back(id); }
    void stateChanged(std::int32_t kind) override { kinds.push_back(kind); }
    void exchangeSources() override {}
    void setProcessorValue(std::int32_t, float) override {}
    void postParameterValue(std::int32_t, float) noexcept override {}
    float processorValue(std::int32_t) const noexcept override { return 0.0f; }

    std::vector<std::int32_t> batches;
    std::vector<std::int32_t> kinds;
};

class UndoHistoryTest : public StateTest {
protected:
    void begin() {
        plugin.undoHistory().begin();
        plugin.compareStates().begin();
    }
    void edit(float gain) {
        plugin.bands.set(0).gain.setValue(gain, 0);
        plugin.pushUndo(-1);
    }
    float gain() const { return plugin.bands.set(0).gain.value(); }

    ZelkPlugin plugin;
};

TEST_F(UndoHistoryTest, OnlyARealMoveIsAChange) {
    begin();
    EXPECT_FALSE(plugin.undoHistory().hasChanges());
    plugin.bands.set(0).gain.setValue(3.0f, 0);
    EXPECT_TRUE(plugin.undoHistory().hasChanges());
    plugin.bands.set(0).gain.setValue(0.0f, 0);
    plugin.customValues = {{"k", "v"}};
    EXPECT_FALSE(plugin.undoHistory().hasChanges());
}

TEST_F(UndoHistoryTest, CopyIsOffUntilTheNextStepAndUndoCrossesTheSwitch) {
    begin();
    EXPECT_FALSE(plugin.compareStates().dirty());
    edit(1.0f);
    EXPECT_TRUE(plugin.compareStates().dirty());
    plugin.compareStates().toggle();
    EXPECT_EQ(gain(), 0.0f);
    EXPECT_EQ(plugin.compareStates().current(), 1);
    plugin.undoHistory().undo();
    EXPECT_EQ(gain(), 1.0f);
    EXPECT_EQ(plugin.compareStates().current(), 0);
    plugin.compareStates().copyToOther();
    EXPECT_FALSE(plugin.compareStates().dirty());
    plugin.compareStates().toggle();
    plugin.compareStates().toggle();
    EXPECT_EQ(gain(), 1.0f);
    EXPECT_EQ(plugin.compareStates().current(), 0);
    EXPECT_EQ(plugin.undoHistory().undoSteps(), 2 + 1);
}

TEST_F(UndoHistoryTest, AStepBackIsHeardAtOnceAndTellsTheHostOfAnotherPresetOnly) {
    HostSpy host;
    plugin.setAdapter(&host);
    begin();
    edit(2.0f);
    host.batches.clear();
    plugin.undoHistory().undo();
    EXPECT_EQ(host.batches, std::vector<std::int32_t>{GenericPlugin::allValuesAtOnce});
    EXPECT_TRUE(host.kinds.empty());
    const std::string path = write("other.tvp", binaryPreset("ZK3p", 4, std::vector<float>(334, 0.0f)).text);
    ASSERT_EQ(plugin.loadPresetFile(path), "");
    plugin.pushUndo(-1);
    host.kinds.clear();
    plugin.undoHistory().undo();
    EXPECT_EQ(host.kinds, std::vector<std::int32_t>{GenericPlugin::presetLoaded});
    EXPECT_EQ(plugin.currentPreset().name(), "Default Setting");
    plugin.undoHistory().redo();
    EXPECT_EQ(plugin.currentPreset().path(), path);
    EXPECT_FALSE(plugin.currentPreset().modified());
    plugin.setAdapter(nullptr);
}

// A model that keeps every state it has seen.
TEST_F(UndoHistoryTest, TenThousandRandomStepsAgreeWithAModelThatKeepsEveryState) {
    const char* const given = std::getenv("SEED");
    const unsigned seed = given != nullptr ? static_cast<unsigned>(std::atoi(given)) : std::random_device()();
    SCOPED_TRACE(testing::Message() << "SEED=" << seed);
    std::mt19937 random(seed);

    struct State {
        std::vector<float> values;
        std::vector<std::uint8_t> focus;
        int slot = 0;
    };
    begin();
    std::deque<State> history{{valuesOf(plugin), {}, 0}};
    std::size_t present = 0;
    State slots[2] = {history[0], history[0]};
    State now = history[0];
    const auto push = [&] {
        history.resize(present + 1);
        history.push_back(now);
        present = history.size() - 1;
        if (history.size() > 100) {
            history.pop_front();
            --present;
        }
    };
    const auto enter = [&](int slot) { // the slot that is left keeps what stands
        if (slot != now.slot)
            slots[now.slot] = now;
    };
    for (int i = 0; i < 10000; ++i) {
        const auto action = static_cast<unsigned>(random() % 100);
        if (action < 50) {
            const auto id =
                static_cast<std::int32_t>(random() % static_cast<std::uint_fast32_t>(plugin.parameterCount()));
            if (id >= 321 && id <= 330)
                continue; // would be saved as an interface default, which is slow here
            AbstractPluginParameter& parameter = plugin.parameter(id);
            parameter.setValue(parameter.denormalize(static_cast<double>(random() % 1000) / 999.0), 0);
            plugin.interfaceState.assign(28, static_cast<std::uint8_t>(random()));
            now.values[static_cast<std::size_t>(id)] = parameter.value();
            now.focus = plugin.interfaceState;
            plugin.pushUndo(id);
            push();
        } else if (action < 70 || action >= 95) {
            plugin.undoHistory().undo();
            if (present > 0) {
                --present;
                enter(history[present].slot);
                now = history[present];
            }
        } else if (action < 85) {
            plugin.undoHistory().redo();
            if (present + 1 < history.size()) {
                ++present;
                enter(history[present].slot);
                now = history[present];
            }
        } else if (action < 92) {
            plugin.compareStates().toggle();
            const int slot = 1 - now.slot;
            enter(slot);
            now = slots[slot];
            now.slot = slot;
            push();
        } else {
            plugin.compareStates().copyToOther();
            slots[1 - now.slot] = now;
        }
        ASSERT_EQ(valuesOf(plugin), now.values) << i;
        ASSERT_EQ(plugin.interfaceState, now.focus) << i;
        ASSERT_EQ(plugin.compareStates().current(), now.slot) << i;
        ASSERT_EQ(plugin.undoHistory().undoSteps(), static_cast<int>(present)) << i;
        ASSERT_EQ(plugin.undoHistory().canRedo(), present + 1 < history.size()) << i;
    }
}

} // namespace
