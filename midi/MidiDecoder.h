// Takes MIDI messages apart: bytes in, events out, with the bank of each channel kept for its program changes.
// Threads: that of its receivers; on the audio side [audio].
#pragma once

#include "framework/MidiMessage.h"
#include "midi/AbstractMusicEventReceiver.h"

#include <array>
#include <cstddef>
#include <cstdint>

class MidiDecoder final : public MidiMessageReceiver {
public:
    explicit MidiDecoder(AbstractMusicEventReceiver& target) noexcept : receiver(target) {} // not owned
    MidiDecoder(const MidiDecoder&) = delete;
    MidiDecoder& operator=(const MidiDecoder&) = delete;

    void receive(const MidiMessage& message) noexcept REALTIME override;

private:
    void dispatch(std::size_t channel, const MidiMessage& message) noexcept REALTIME;
    void control(std::size_t channel, AbstractChannelEventReceiver& target,
                 const MidiMessage& message) noexcept REALTIME;

    AbstractMusicEventReceiver& receiver;
    // 14 bits each, selected in two halves. That of channel 0 follows every channel.
    std::array<std::int32_t, AbstractMusicEventReceiver::channelCount> banks{};
};
