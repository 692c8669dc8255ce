#include "midi/DefaultEventReceiver.h"

#include "framework/FloatPluginParameter.h"
#include "framework/GenericPluginProcessor.h"
#include "midi/ProcessorMidiInput.h"
#include "tests/support/RealtimeWatch.h"

#include <gtest/gtest.h>

#include <random>
#include <utility>
#include <vector>

namespace {

class Target final : public ValueAssignable<float> {
public:
    void assign(float wanted) override { value = wanted; }
    float value = -1.0f;
};

class MidiProcessor final : public GenericPluginProcessor {
public:
    MidiProcessor() : GenericPluginProcessor(1, 2) {
        frequency.setRange(-20.0f, 60.0f, 0.0f);
        init();
    }

    void noteOn(std::int32_t, float) noexcept REALTIME override { ++notesOn; }
    void noteOff(std::int32_t, float) noexcept REALTIME override { ++notesOff; }

    void run(std::size_t frames) {
        std::vector<float> sound(frames);
        const float* inputs[] = {sound.data(), sound.data()};
        float* outputs[] = {sound.data(), sound.data()};
        std::uint32_t flags = 0;
        process({inputs, outputs}, frames, flags);
    }

    FloatPluginParameter frequency{this, "Frequency"};
    FloatPluginParameter gain{this, "Gain"};
    ProcessorMidiInput* input = nullptr;
    int notesOn = 0;
    int notesOff = 0;

protected:
    std::unique_ptr<MidiMessageReceiver> createMidiReceiver() override {
        auto created = std::make_unique<ProcessorMidiInput>(*this);
        input = created.get();
        return created;
    }
};

class HostBinding final : public GenericPluginProcessor::ProcessorAdapter {
public:
    void programChange(std::int32_t bank, std::int32_t number) noexcept REALTIME override { program = {bank, number}; }
    void midiActivity(std::int32_t code) noexcept REALTIME override { activity = code; }
    void processorParameterChanged(std::int32_t id) noexcept override { changed = id; }

    std::pair<std::int32_t, std::int32_t> program{-1, -1};
    std::int32_t activity = -2;
    std::int32_t changed = -1;
};

class DefaultEventReceiverTest : public testing::Test {
protected:
    DefaultEventReceiverTest() { processor.setAdapter(&binding); }

    void send(int status, int data1, int data2) {
        processor.receiveHostMidi({static_cast<std::uint8_t>(status), static_cast<std::uint8_t>(data1),
                                   static_cast<std::uint8_t>(data2), 0, 0});
        processor.run(8);
    }

    MidiProcessor processor;
    HostBinding binding;
};

TEST_F(DefaultEventReceiverTest, TargetsThatAreNoParametersMoveNoParameter) {
    Target target;
    processor.floatTargets = {&target};
    std::int32_t controller = 40;
    for (const std::int32_t entry : {-1, -2, INT32_MIN, 2, 3, ControllerMapping::firstControl,
                                     ControllerMapping::firstFloatTarget + 1, INT32_MAX}) {
        processor.controllerMapping().set(static_cast<std::size_t>(controller), entry);
        send(0xB0, controller, 127);
        EXPECT_EQ(binding.activity, controller++);
    }
    send(0xB0, 200, 127); // beyond the table
    EXPECT_EQ(binding.activity, 200);
    EXPECT_EQ(binding.changed, -1);
    EXPECT_EQ(target.value, -1.0f);
    processor.controllerMapping().set(11, ControllerMapping::firstFloatTarget);
    send(0xB0, 11, 127);
    EXPECT_NEAR(target.value, 1.0f, 1e-6f);
}

TEST_F(DefaultEventReceiverTest, NotesProgramsAndListenersHearTheChannelThatIsChosen) {
    struct Listener final : AbstractChannelEventReceiver::Listener {
        void controlChange(std::int32_t controller, std::int32_t raw, float) noexcept REALTIME override {
            last = {controller, raw};
        }
        void modWheel(float value) noexcept REALTIME override { wheel = value; }
        std::pair<std::int32_t, std::int32_t> last{-1, -1};
        float wheel = -1.0f;
    } listener;
    processor.input->receiver().channelReceiver().addListener(listener);
    send(0x93, 60, 100);
    send(0x83, 60, 0);
    EXPECT_EQ(processor.notesOn, 1);
    EXPECT_EQ(processor.notesOff, 1);
    send(0xB3, 0, 1);
    send(0xB3, 32, 2);
    send(0xC3, 5, 0);
    EXPECT_EQ(binding.program, (std::pair<std::int32_t, std::int32_t>{130, 5}));
    send(0xB3, 2, 9);
    EXPECT_EQ(listener.wheel, -1.0f);
    send(0xB3, 1, 127);
    EXPECT_EQ(listener.last, (std::pair<std::int32_t, std::int32_t>{1, 127}));
    EXPECT_EQ(listener.wheel, 1.0f);

    processor.input->receiver().channel = 5;
    send(0x93, 60, 100);
    EXPECT_EQ(processor.notesOn, 1);
    send(0x94, 60, 100);
    EXPECT_EQ(processor.notesOn, 2) << "the fifth channel, and once";
    processor.input->receiver().channelReceiver().removeListener(listener);
    send(0xB4, 1, 3);
    EXPECT_EQ(listener.last.second, 127);
}

} // namespace
