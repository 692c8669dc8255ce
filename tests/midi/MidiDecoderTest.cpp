#include "midi/MidiDecoder.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

namespace {

using Log = std::vector<std::string>;

class RecordingReceiver final : public AbstractChannelEventReceiver {
public:
    void channelPressure(float pressure) noexcept REALTIME override { record("pressure %.4f", pressure); }
    void polyPressure(std::int32_t note, float pressure) noexcept REALTIME override {
        record("poly %g %.4f", note, pressure);
    }
    void controlChange(std::int32_t controller, std::int32_t raw, float value) noexcept REALTIME override {
        record("control %g %g %.4f", controller, raw, value);
    }
    void noteOff(std::int32_t note, float velocity) noexcept REALTIME override {
        record("off %g %.4f", note, velocity);
    }
    void noteOn(std::int32_t note, float velocity) noexcept REALTIME override { record("on %g %.4f", note, velocity); }
    void pitchBend(float position) noexcept REALTIME override { record("bend %.4f", position); }
    void programChange(std::int32_t bank, std::int32_t program) noexcept REALTIME override {
        record("program %g %g", bank, program);
    }

    Log log;

private:
    void record(const char* format, double a, double b = 0.0, double c = 0.0) noexcept REALTIME {
        const RealtimePermit permit{"a test's log"};
        trustedRealtime([&] {
            char text[64];
            std::snprintf(text, sizeof text, format, a, b, c);
            log.emplace_back(text);
        });
    }
};

class MidiDecoderTest : public testing::Test {
protected:
    MidiDecoderTest() {
        for (std::size_t channel = 0; channel < receivers.size(); ++channel)
            tree.channelReceivers[channel] = &receivers[channel];
    }

    void send(int status, int data1, int data2) {
        decoder.receive({static_cast<std::uint8_t>(status), static_cast<std::uint8_t>(data1),
                         static_cast<std::uint8_t>(data2), 0, 0});
    }
    Log take(std::size_t channel) { return std::exchange(receivers[channel].log, {}); }

    std::array<RecordingReceiver, AbstractMusicEventReceiver::channelCount> receivers;
    AbstractMusicEventReceiver tree;
    MidiDecoder decoder{tree};
};

TEST_F(MidiDecoderTest, EveryStatusReachesAllChannelsAndItsOwnAndNoOther) {
    const struct {
        int status, data1, data2;
        Log events;
    } rows[] = {
        {0x80, 60, 127, {"off 60 1.0000"}},
        {0x90, 61, 64, {"on 61 0.5039"}},
        {0x90, 62, 0, {"off 62 0.0000"}},
        {0xA0, 63, 32, {"poly 63 0.2520"}},
        {0xB0, 74, 127, {"control 74 127 1.0000"}},
        {0xB0, 120, 1, {"control 120 1 0.0079"}},
        {0xB0, 123, 99, {"off 0 0.0000"}},
        {0xB0, 0, 5, {}},
        {0xB0, 32, 7, {}},
        {0xC0, 9, 0, {"program 647 9"}}, // 5 * 128 + 7
        {0xD0, 127, 0, {"pressure 1.0000"}},
        {0xE0, 0, 0, {"bend -0.5000"}},
        {0xE0, 127, 127, {"bend 0.5000"}},
        {0xE0, 0, 64, {"bend 0.0000"}},
    };
    for (int channel = 0; channel < 16; ++channel)
        for (const auto& row : rows) {
            const auto own = static_cast<std::size_t>(channel) + 1;
            send(row.status | channel, row.data1, row.data2);
            EXPECT_EQ(take(own), row.events) << std::hex << (row.status | channel);
            EXPECT_EQ(take(0), row.events) << std::hex << (row.status | channel);
            for (std::size_t other = 1; other < receivers.size(); ++other)
                EXPECT_EQ(take(other), Log{}) << "channel " << other << " heard " << std::hex << row.status;
        }
}

} // namespace
