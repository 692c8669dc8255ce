#include "framework/InstanceProxy.h"

#include "framework/ExchangeStream.h"
#include "framework/PluginInstances.h"
#include "framework/ReceivedSources.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

std::uint32_t now = 0xFFFFFFF0u; // soon the clock wraps
std::uint32_t fakeTicks() noexcept {
    return now;
}

// An instance whose audio side sends what the test left for the next exchange: mono blocks of 256 samples, each full of
// its number.
class SendingPlugin final : public GenericPlugin, public GenericPlugin::Adapter, public GenericPlugin::Listener {
public:
    explicit SendingPlugin(const std::string& name = "Zelk") {
        info.productName = name;
        info.capabilities = GenericPluginInfo::instanceNames | GenericPluginInfo::midiLearnQueue;
        sourceCounts.audio = 2;
        init();
        setExchangeClock(fakeTicks);
        setAdapter(this);
    }
    ~SendingPlugin() override { end(); }

    using GenericPlugin::restoreInstanceId;

    void syncControllerMapping() override {}
    void latencyChanged() override {}
    void sendMidiToProcessor(const MidiMessage&) override {}
    void sendParameterToHost(std::int32_t) override {}
    void stateChanged(std::int32_t) override {}
    void setProcessorValue(std::int32_t, float) override {}
    void postParameterValue(std::int32_t, float) noexcept override {}
    float processorValue(std::int32_t) const noexcept override { return 0.0f; }
    void pluginEvent(std::int32_t code, std::int32_t) override { heard.push_back(code); }
    void lockInterface() override { ++interfaceLocks; }

    void exchangeSources() override {
        ++exchanges;
        ExchangeStream stream;
        for (int source = 0; source < 2; ++source) {
            for (const std::int32_t number : {1, pending, 256})
                stream.write(number);
            for (std::int32_t block = 0; block < pending; ++block)
                stream.writeSamples(std::vector<float>(256, static_cast<float>(sent + block)));
        }
        stream.write(120.0f);
        for (const std::uint8_t byte : std::initializer_list<std::uint8_t>{1, 0xB0, 7, 1, 0})
            stream.write(byte);
        readSources(stream);
        sent += std::exchange(pending, 0);
    }

    std::int32_t pending = 0; // blocks
    std::int32_t sent = 0;
    int exchanges = 0;
    int interfaceLocks = 0;
    std::vector<std::int32_t> heard;
};

// The numbers of the blocks that one look finds.
std::vector<int> look(AudioSource& source) {
    const LockedSource::Lock held(source);
    std::vector<int> numbers;
    for (std::size_t block = 0; block < source.blockCount(); ++block)
        numbers.push_back(static_cast<int>(source.blockData(block, 0)[255]));
    return numbers;
}

TEST(InstanceProxy, EachReaderHasAPositionOfItsOwnAndTheOwnerIsNotDisturbed) {
    SendingPlugin owner;
    SendingPlugin reader;
    auto proxies = GenericPlugin::instanceProxies(&reader);
    ASSERT_EQ(proxies.size(), 1u);
    AudioSource& post = proxies[0]->source(1);
    owner.pending = 3;
    EXPECT_EQ(look(post), std::vector<int>{}) << "a first look finds nothing new";
    EXPECT_EQ(owner.exchanges, 1);
    owner.pending = 2;
    EXPECT_EQ(look(post), std::vector<int>{}) << "not within 5 ms";
    now += 5;
    EXPECT_EQ(look(post), (std::vector<int>{3, 4}));
    EXPECT_EQ(look(proxies[0]->source(0)), std::vector<int>{});
    now += 5;
    owner.pending = 1;
    EXPECT_EQ(look(proxies[0]->source(0)), std::vector<int>{5});
    EXPECT_EQ(look(post), std::vector<int>{5});
    EXPECT_EQ(look(owner.sources().audio(1)), (std::vector<int>{0, 1, 2, 3, 4, 5}));

    // Away for long: the newest quarter second, 44 blocks.
    for (int times = 0; times < 3; ++times) {
        now += 5;
        owner.pending = 30;
        EXPECT_TRUE(owner.exchangeWhenDue());
    }
    const std::vector<int> late = look(post);
    ASSERT_EQ(late.size(), 44u);
    EXPECT_EQ(late.front(), 52);
    EXPECT_EQ(late.back(), 95);
}

TEST(InstanceProxy, AnInterfaceExchangesForItselfAndOthersOnlyOnTheMainThreadAndWithNothingHeld) {
    SendingPlugin owner;
    const auto proxy = std::move(GenericPlugin::instanceProxies(nullptr).front());
    MidiMessage message;
    look(proxy->source(0));
    EXPECT_EQ(owner.exchanges, 1);
    EXPECT_FALSE(owner.sources().takeLearnMessage(message)) << "nobody is there to learn";
    owner.setListener(&owner);
    now += 5;
    look(proxy->source(0));
    EXPECT_EQ(owner.exchanges, 1);
    owner.sources().dropLearnMessages();
    EXPECT_TRUE(owner.exchangeWhenDue());
    EXPECT_FALSE(owner.exchangeWhenDue());
    EXPECT_FALSE(owner.sources().takeLearnMessage(message)) << "came before the window";
    now += 5;
    EXPECT_TRUE(owner.exchangeWhenDue());
    EXPECT_TRUE(owner.sources().takeLearnMessage(message));
    EXPECT_EQ(owner.interfaceLocks, 2);
    owner.setListener(nullptr);
    now += 5;
    std::thread drawing([&] { look(proxy->source(0)); });
    drawing.join();
    EXPECT_EQ(owner.exchanges, 3);
    {
        const LockedSource::Lock held(proxy->source(0));
        EXPECT_EQ(owner.exchanges, 4);
        now += 5;
        const LockedSource::Lock again(proxy->source(1));
        EXPECT_EQ(owner.exchanges, 4) << "what is held does not move";
    }
    proxy->refresh();
    EXPECT_EQ(owner.exchanges, 5);
}

TEST(InstanceProxy, FindsItsInstanceWhereverItStandsAndReadsNothingWhenItHasGone) {
    auto first = std::make_unique<SendingPlugin>();
    auto second = std::make_unique<SendingPlugin>();
    auto third = std::make_unique<SendingPlugin>();
    auto proxies = GenericPlugin::instanceProxies(third.get());
    std::set<std::string> names;
    for (const auto& proxy : proxies)
        names.insert(proxy->name());
    EXPECT_EQ(names, (std::set<std::string>{"Zelk", "Zelk (2)"}));
    GenericPlugin::InstanceProxy& toSecond =
        *(proxies[0]->instanceId() == second->instanceId() ? proxies[0] : proxies[1]);
    EXPECT_EQ(toSecond.name(), "Zelk (2)");
    second->setListener(second.get());
    second->setInstanceName("A voice"); // sorts to the front
    EXPECT_EQ(second->heard, std::vector<std::int32_t>{GenericPlugin::eventInstanceNames});
    EXPECT_EQ(toSecond.name(), "A voice");
    second->setListener(nullptr);
    first.reset();
    const SendingPlugin fourth;
    EXPECT_EQ(fourth.instanceName(), "Zelk");
    EXPECT_EQ(toSecond.name(), "A voice");
    look(toSecond.source(0));
    second->pending = 2;
    now += 5;
    EXPECT_EQ(look(toSecond.source(0)).size(), 2u);
    second.reset();
    const SendingPlugin fifth;
    EXPECT_EQ(toSecond.name(), "");
    const LockedSource::Lock held(toSecond.source(0));
    EXPECT_EQ(toSecond.source(0).blockCount(), 0u);
    EXPECT_EQ(toSecond.source(0).channelCount(), 0u);
}

TEST(InstanceProxy, NoInstanceGetsTheIdOfAnotherWhateverASavedStateNames) {
    SendingPlugin first;
    SendingPlugin second;
    const std::int32_t id = first.instanceId();
    second.restoreInstanceId(id);
    EXPECT_NE(second.instanceId(), id);
    second.restoreInstanceId(id + 5);
    EXPECT_EQ(second.instanceId(), id + 5);
    SendingPlugin third; // has no id until a search meets it
    std::size_t position = 99;
    EXPECT_EQ(PluginInstances::ofProcess().find(id + 6, position), &third);
    EXPECT_EQ(PluginInstances::ofProcess().find(-7, position), nullptr);
}

} // namespace
