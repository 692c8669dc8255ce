#include "midi/MidiDecoder.h"

namespace {

constexpr std::uint8_t firstStatus = 0x80;
constexpr std::uint8_t firstSystemStatus = 0xF0;
constexpr std::uint8_t systemReset = 0xFF;

// Controllers that are no controllers: they never reach controlChange.
constexpr std::uint8_t bankHigh = 0;
constexpr std::uint8_t bankLow = 32;
constexpr std::uint8_t allNotesOff = 123;

constexpr std::int32_t lowBits = 0x7F;
constexpr std::int32_t highBits = 0x3F80;

float scaled(std::uint8_t data) noexcept REALTIME {
    return static_cast<float>(data) * 0.007874016f; // 1 / 127
}

float bend(std::uint8_t low, std::uint8_t high) noexcept REALTIME {
    return static_cast<float>((high << 7) + low) * 6.103888e-5f - 0.5f; // 1 / 16383
}

} // namespace

void MidiDecoder::receive(const MidiMessage& message) noexcept REALTIME {
    if (AbstractChannelEventReceiver* const all = receiver.channelReceivers[0].get(); all != nullptr)
        all->rawMessage(message.status, message.data1, message.data2);
    if (message.status >= firstSystemStatus) {
        if (message.status == systemReset && receiver.systemReceiver.get() != nullptr)
            receiver.systemReceiver.get()->systemReset();
    } else if (message.status >= firstStatus) {
        dispatch(0, message);
        dispatch((message.status & 15u) + 1u, message);
    }
}

void MidiDecoder::dispatch(std::size_t channel, const MidiMessage& message) noexcept REALTIME {
    AbstractChannelEventReceiver* const target = receiver.channelReceivers[channel].get();
    if (target == nullptr)
        return;
    switch (message.status & 0xF0u) {
    case 0x80:
        target->noteOff(message.data1, scaled(message.data2));
        break;
    case 0x90:
        if (message.data2 > 0)
            target->noteOn(message.data1, scaled(message.data2));
        else
            target->noteOff(message.data1, 0.0f);
        break;
    case 0xA0:
        target->polyPressure(message.data1, scaled(message.data2));
        break;
    case 0xB0:
        control(channel, *target, message);
        break;
    case 0xC0:
        target->programChange(banks[channel], message.data1);
        break;
    case 0xD0:
        target->channelPressure(scaled(message.data1));
        break;
    default: // 0xE0
        target->pitchBend(bend(message.data1, message.data2));
        break;
    }
}

void MidiDecoder::control(std::size_t channel, AbstractChannelEventReceiver& target,
                          const MidiMessage& message) noexcept REALTIME {
    std::int32_t& bank = banks[channel];
    switch (message.data1) {
    case bankHigh:
        bank = (message.data2 << 7) + (bank & lowBits);
        break;
    case bankLow:
        bank = message.data2 + (bank & highBits);
        break;
    case allNotesOff:
        target.noteOff(0, 0.0f);
        break;
    default:
        target.controlChange(message.data1, message.data2, scaled(message.data2));
        break;
    }
}
