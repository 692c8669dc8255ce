// What the editor side sees of the audio side, and what another instance sees of both: through whole instances.
#include "framework/InstanceProxy.h"
#include "framework/ReceivedSources.h"
#include "framework/zelk/ZelkInit.h"
#include "framework/zelk/ZelkPlugin.h"
#include "host/ClapDescriptorBlock.h"
#include "host/ClapPluginAdapter.h"
#include "tests/support/ClapTestHost.h"
#include "tests/support/TemporaryHome.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr std::uint32_t frames = 256;
using Samples = std::vector<float>;

// One instance that runs blocks of counted samples: the main channel c of block b starts at 1000 * b + c, the side
// chain is its negative. Small steps make every sample known.
class Instance {
public:
    Instance() : plugin((new ClapPluginAdapter(host.host, block.plugin))->clapPlugin()) {
        if (!plugin->init(plugin))
            throw std::runtime_error("no instance");
    }
    ~Instance() { plugin->destroy(plugin); }
    Instance(const Instance&) = delete;
    Instance& operator=(const Instance&) = delete;

    ClapPluginAdapter& adapter() { return ClapPluginAdapter::of(plugin); }
    GenericPlugin& editor() { return adapter().editorSide(); }
    ReceivedSources& sources() { return editor().sources(); }
    std::size_t channels() { return adapter().outputPort().channel_count; }

    void start() {
        ASSERT_TRUE(plugin->activate(plugin, 48000.0, 1, frames));
        ASSERT_TRUE(plugin->start_processing(plugin));
    }
    void stop() {
        plugin->stop_processing(plugin);
        plugin->deactivate(plugin);
        plugin->on_main_thread(plugin);
    }

    void run(int blocks) {
        std::vector<Samples> sound(3 * channels(), Samples(frames));
        std::vector<float*> pointers;
        for (Samples& channel : sound)
            pointers.push_back(channel.data());
        const auto count = static_cast<std::uint32_t>(channels());
        clap_audio_buffer inputs[] = {{pointers.data(), nullptr, count, 0, 0},
                                      {pointers.data() + count, nullptr, count, 0, 0}};
        clap_audio_buffer output{pointers.data() + 2 * count, nullptr, count, 0, 0};
        ClapTestEvents events;
        ClapTestOutput taken;
        clap_process process{};
        process.frames_count = frames;
        process.audio_inputs = inputs;
        process.audio_inputs_count = 2;
        process.audio_outputs = &output;
        process.audio_outputs_count = 1;
        process.in_events = events.list();
        process.out_events = taken.list();
        for (; blocks > 0; --blocks) {
            for (std::size_t channel = 0; channel < count; ++channel)
                for (std::size_t i = 0; i < frames; ++i) {
                    sound[channel][i] = sampleAt(position + static_cast<std::int64_t>(i), channel);
                    sound[count + channel][i] = -sound[channel][i];
                }
            position += frames;
            plugin->process(plugin, &process);
        }
    }

    static float sampleAt(std::int64_t at, std::size_t channel) {
        return at < 0 ? 0.0f : static_cast<float>(at % 30000 + static_cast<std::int64_t>(channel)) * 1e-5f;
    }

    // Of one source, what came since the last look.
    std::vector<Samples> taken(std::size_t source) {
        AudioSourceProxy& proxy = sources().audio(source);
        const LockedSource::Lock held(proxy);
        std::vector<Samples> sound(proxy.channelCount());
        for (std::size_t number = 0; number < proxy.blockCount(); ++number)
            for (std::size_t channel = 0; channel < sound.size(); ++channel) {
                const auto samples = proxy.blockData(number, channel);
                sound[channel].insert(sound[channel].end(), samples.begin(), samples.end());
            }
        return sound;
    }

    std::int64_t position = 0; // of the next block

private:
    static ClapDescriptorBlock describe() {
        GenericPluginInfo info;
        const ZelkInit product(info);
        return ClapDescriptorBlock(info);
    }

    ClapDescriptorBlock block = describe();

public:
    ClapTestHost host;
    const clap_plugin* plugin;
};

class SourceExchangeTest : public testing::Test {
protected:
    const TemporaryHome home;
};

TEST_F(SourceExchangeTest, InputOutputAndSideChainArriveLinedUpInEveryModeAndLayout) {
    Instance instance;
    const auto& zelk = dynamic_cast<ZelkPlugin&>(instance.editor());
    for (const int layout : {1, 0, 13}) {
        ASSERT_TRUE(instance.adapter().selectLayout(layout));
        instance.start();
        for (const std::int32_t mode : {0, 2, 1, 0}) { // delays come, change and go while the audio runs
            instance.editor().parameter(zelk.processingMode.id()).setValue(static_cast<float>(mode), 0);
            instance.run(60);
            instance.plugin->on_main_thread(instance.plugin);
            instance.adapter().exchangeSources(); // throws away what was recorded while nobody looked
            for (std::size_t source = 0; source < 3; ++source)
                instance.taken(source);
            const std::int64_t from = instance.position - instance.editor().latency();
            instance.run(8);
            instance.adapter().exchangeSources();
            EXPECT_EQ(mode != 0, instance.editor().latency() > 0);
            const auto input = instance.taken(0);
            const auto output = instance.taken(1);
            const auto sideChain = instance.taken(2);
            ASSERT_EQ(input.size(), instance.channels());
            float worst = 0.0f;
            for (std::size_t channel = 0; channel < input.size(); ++channel) {
                ASSERT_EQ(input[channel].size(), 8u * frames);
                for (std::size_t i = 0; i < input[channel].size(); ++i) {
                    const float expected = Instance::sampleAt(from + static_cast<std::int64_t>(i), channel);
                    ASSERT_EQ(input[channel][i], expected) << layout << ' ' << mode << ' ' << i;
                    ASSERT_EQ(sideChain[channel][i], -expected) << layout << ' ' << mode << ' ' << i;
                    worst = std::max(worst, std::abs(output[channel][i] - expected));
                }
            }
            EXPECT_LT(worst, 1e-5f) << "nothing is equalized, " << layout << ' ' << mode;
        }
        EXPECT_NEAR(instance.sources().channelLevel(0).level(LevelSource::Info::level), -12.0f, 12.0f);
        instance.stop();
    }
}

TEST_F(SourceExchangeTest, MetersAnswerInTheirSlotsAndAPeakIsResetByTheNextExchange) {
    Instance instance;
    instance.start();
    auto& zelk = dynamic_cast<ZelkPlugin&>(instance.editor());
    EQParameterSet& band = zelk.bands.set(5);
    for (AbstractPluginParameter* const on : {static_cast<AbstractPluginParameter*>(&band.used),
                                              static_cast<AbstractPluginParameter*>(&band.dynamicsEnabled)})
        on->setValue(1.0f, 0);
    band.shape.setValue(static_cast<float>(band.shape.indexFromTyped(FilterShape::lowShelf)), 0); // hears the ramps
    band.dynamicRange.setValue(-12.0f, 0);
    band.threshold.setValue(band.threshold.minimum(), 0);
    instance.run(80);
    instance.adapter().exchangeSources();
    ASSERT_EQ(instance.sources().levelCount(), 50u);
    const auto level = [&](std::size_t slot, LevelSource::Info info = LevelSource::Info::level) {
        return instance.sources().level(slot).level(info);
    };
    EXPECT_LT(level(5), -1.0f) << "this band cuts";
    EXPECT_EQ(instance.sources().level(5).getDetection(), LevelSource::Detection::smallest);
    EXPECT_GT(level(24 + 5), -60.0f) << "what its detector hears";
    EXPECT_GT(level(49), -40.0f);
    EXPECT_LT(level(24 + 4), -100.0f) << "the band beside it rests";
    const float extreme = level(48, LevelSource::Info::extreme);
    instance.sources().channelLevel(0).resetPeak();
    instance.adapter().exchangeSources();
    EXPECT_LT(level(48, LevelSource::Info::extreme), extreme);
    instance.stop();
}

TEST_F(SourceExchangeTest, TheGraphKnowsForASecondThatSomebodyLooksAndThenStopsCopying) {
    Instance instance;
    instance.start();
    EXPECT_FALSE(instance.adapter().audioSide().environment().uiActive);
    instance.adapter().exchangeSources();
    instance.run(187);
    EXPECT_TRUE(instance.adapter().audioSide().environment().uiActive);
    instance.run(1); // 48128 samples
    EXPECT_FALSE(instance.adapter().audioSide().environment().uiActive);
    instance.adapter().exchangeSources();
    EXPECT_EQ(instance.sources().audio(0).receivedBlocks(), 0) << "the audio of a gap is never shown";
    instance.run(3);
    instance.adapter().exchangeSources();
    EXPECT_EQ(instance.sources().audio(0).receivedBlocks(), 3);
    instance.stop();
}

// A ring of instances: the main thread keeps all of them exchanging through the links alone, each has an audio thread's
// blocks, and threads that draw look at their neighbour's sound. Instances go away and come back under their eyes.
TEST_F(SourceExchangeTest, AHundredInstancesReadEachOtherInARingWhileTheyComeAndGo) {
    constexpr std::size_t count = 100;
    constexpr std::size_t drawers = 3;
    std::vector<std::unique_ptr<Instance>> ring;
    std::vector<std::unique_ptr<GenericPlugin::InstanceProxy>> links;
    for (std::size_t index = 0; index < count; ++index) {
        ring.push_back(std::make_unique<Instance>());
        ring.back()->start();
    }
    for (std::size_t index = 0; index < count; ++index)
        links.push_back(
            std::make_unique<GenericPlugin::InstanceProxy>(ring[(index + 1) % count]->editor().instanceId(), 3));

    std::atomic<bool> stopping{false};
    std::atomic<std::int64_t> blocksSeen{0};
    std::atomic<int> broken{0}; // blocks in which a sample does not follow on the one before
    std::vector<std::thread> threads;
    for (std::size_t drawer = 0; drawer < drawers; ++drawer)
        threads.emplace_back([&, drawer] {
            for (std::size_t index = drawer; !stopping; index = index + drawers < count ? index + drawers : drawer) {
                AudioSource& input = links[index]->source(0);
                {
                    const LockedSource::Lock held(input);
                    for (std::size_t block = 0; block < input.blockCount(); ++block) {
                        const std::span<const float> samples = input.blockData(block, 1);
                        for (std::size_t i = 1; i < samples.size(); ++i)
                            if (const float step = samples[i] - samples[i - 1]; step > 2e-5f || step < -0.29f - 2e-2f)
                                ++broken;
                        ++blocksSeen;
                    }
                }
                std::this_thread::yield(); // the lock has no order: others want it too
            }
        });
    std::atomic<std::size_t> gone{count}; // which the audio must leave alone
    std::atomic<std::size_t> playing{count};
    threads.emplace_back([&] {
        for (std::size_t index = 0; !stopping; index = (index + 1) % count) {
            playing = index;
            if (index != gone)
                ring[index]->run(2);
            playing = count;
        }
    });
    for (std::size_t round = 0; round < 40; ++round) {
        for (const auto& link : links)
            link->refresh();
        const std::size_t victim = round * 37 % count;
        gone = victim;
        while (playing == victim)
            std::this_thread::yield();
        const std::int32_t id = ring[victim]->editor().instanceId();
        ring[victim]->stop();
        ring[victim].reset();
        EXPECT_EQ(links[(victim + count - 1) % count]->name(), "");
        auto fresh = std::make_unique<Instance>();
        EXPECT_NE(fresh->editor().instanceId(), id);
        fresh->start();
        ring[victim] = std::move(fresh);
        gone = count;
    }
    for (int waits = 0; blocksSeen < 20 && waits < 2000; ++waits) {
        for (const auto& link : links)
            link->refresh();
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    stopping = true;
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(broken, 0);
    EXPECT_GE(blocksSeen, 20);
    for (const auto& instance : ring)
        instance->stop();
}

} // namespace
