// Both threads at once, on the classes themselves, so that the tools see every access.
#include "framework/AbstractPluginParameter.h"
#include "framework/ChangeBracket.h"
#include "framework/zelk/ZelkInit.h"
#include "host/ClapDescriptorBlock.h"
#include "host/ClapPluginAdapter.h"
#include "tests/support/ClapTestHost.h"

#include <gtest/gtest.h>

#include <atomic>
#include <random>
#include <sstream>
#include <thread>
#include <vector>

namespace {

constexpr std::uint32_t blockFrames = 64;

// An instance whose audio thread runs blocks full of automation until it is told to stop.
class BusyInstance {
public:
    BusyInstance() = default;
    BusyInstance(const BusyInstance&) = delete;
    BusyInstance& operator=(const BusyInstance&) = delete;

    ClapPluginAdapter& adapter() { return ClapPluginAdapter::of(plugin); }

    void startAudio(unsigned seed) {
        instance.start(48000.0, blockFrames);
        for (auto& input : instance.inputs)
            input.assign(blockFrames, 0.1f);
        stopping = false;
        audio = std::thread([this, seed] { runAudio(seed); });
    }
    void stopAudio() {
        stopping = true;
        audio.join();
        instance.stop();
        plugin->on_main_thread(plugin);
    }
    int blocks() const { return blockCount; }

private:
    static ClapDescriptorBlock describe() {
        GenericPluginInfo info;
        const ZelkInit product(info);
        return ClapDescriptorBlock(info);
    }

    ClapDescriptorBlock block = describe();

public:
    ClapTestHost host;
    ClapTestInstance instance{(new ClapPluginAdapter(host.host, block.plugin))->clapPlugin()};
    const clap_plugin* const plugin = instance.plugin;

private:
    void runAudio(unsigned seed) {
        std::mt19937 random(seed);
        while (!stopping) {
            instance.events.clear();
            instance.taken.values.clear();
            for (std::uint32_t i = 0; i < 6; ++i) {
                const auto id = static_cast<clap_id>(random() % 358);
                instance.events.addValue(i * 10, id, static_cast<double>(random() % 1000) / 100.0 - 2.0);
                instance.events.addMidi(i * 10, 0xB0, static_cast<std::uint8_t>(random() % 128), 64);
            }
            instance.process(blockFrames);
            ++blockCount;
            std::this_thread::yield();
        }
    }

    std::thread audio;
    std::atomic<bool> stopping{false};
    std::atomic<int> blockCount{0};
};

void editAsTheInterfaceDoes(BusyInstance& instance, std::mt19937& random) {
    GenericPlugin& editor = instance.adapter().editorSide();
    const auto anyId = [&random] { return static_cast<std::int32_t>(random() % 358); };
    editor.parameter(anyId()).setValue(static_cast<float>(random() % 100) / 50.0f - 1.0f, 0);
    {
        const ChangeBracket batch(editor);
        for (int i = 0; i < 5; ++i)
            editor.parameter(anyId()).setValue(static_cast<float>(random() % 3),
                                               i % 2 == 0 ? 0 : GenericParameterOwner::silent);
        editor.markJump();
    }
    const std::int32_t id = anyId();
    EXPECT_FALSE(editor.parameter(id).text(editor.parameter(id).value()).empty());
    editor.controllerMapping().assign(static_cast<std::int32_t>(random() % 128), anyId());
    editor.receive({0x90, 60, 100, 0, 0});
    instance.adapter().setProcessorValue(anyId(), 0.5f); // which moves no parameter
}

void askAsTheHostDoes(BusyInstance& instance, std::mt19937& random) {
    const clap_plugin* const plugin = instance.plugin;
    const auto table = [plugin](const char* id) { return plugin->get_extension(plugin, id); };
    const auto* const params = static_cast<const clap_plugin_params*>(table(CLAP_EXT_PARAMS));
    const auto* const ports = static_cast<const clap_plugin_audio_ports*>(table(CLAP_EXT_AUDIO_PORTS));
    const auto* const track = static_cast<const clap_plugin_track_info*>(table(CLAP_EXT_TRACK_INFO));
    double value = 0.0;
    EXPECT_TRUE(params->get_value(plugin, static_cast<clap_id>(random() % 358), &value));
    clap_audio_port_info info{};
    EXPECT_TRUE(ports->get(plugin, 1, true, &info));
    instance.host.trackName = std::to_string(random() % 4);
    track->changed(plugin);
    if (random() % 8 == 0) {
        std::stringstream state;
        EXPECT_TRUE(instance.adapter().editorSide().writeParameterBlock(state));
    }
    plugin->on_main_thread(plugin);
}

TEST(ClapThreads, AutomationMeetsEditsBatchesQuestionsAndNewPortsAndBothSidesEndEqual) {
    BusyInstance instance;
    std::mt19937 random(11);
    for (const int layout : {1, 12, 0, 28}) {
        ASSERT_TRUE(instance.adapter().selectLayout(layout));
        instance.startAudio(static_cast<unsigned>(layout));
        for (int round = 0; round < 16; ++round) {
            const int before = instance.blocks();
            editAsTheInterfaceDoes(instance, random);
            askAsTheHostDoes(instance, random);
            while (instance.blocks() == before) // no person outruns the audio thread; a test that does takes minutes
                std::this_thread::yield();
        }
        // A batch whose only changes were silent ones stays with the editor: all values go along once more.
        instance.adapter().sendParameterToHost(GenericPlugin::allValuesSmoothed);
        instance.stopAudio();
        for (std::int32_t id = 0; id < 358; ++id)
            ASSERT_EQ(instance.adapter().editorSide().parameter(id).value(),
                      instance.adapter().audioSide().parameter(id).value())
                << "layout " << layout << ", parameter " << id;
    }
}

TEST(ClapThreads, InstancesComeAndGoWhileOthersPlay) {
    BusyInstance playing;
    playing.startAudio(3);
    while (playing.blocks() < 30) {
        const BusyInstance passing;
        playing.plugin->on_main_thread(playing.plugin);
    }
    playing.stopAudio();
}

} // namespace
