// One MIDI message on its way through an instance, and what takes such messages.
// Threads: those of the receiver.
#pragma once

#include "base/Realtime.h"

#include <cstdint>

struct MidiMessage {
    std::uint8_t status = 0;
    std::uint8_t data1 = 0;
    std::uint8_t data2 = 0;
    std::uint8_t pad = 0;
    std::int32_t offset = 0; // samples from the start of the sub-block in which it was read
};

static_assert(sizeof(MidiMessage) == 8);

class MidiMessageReceiver {
public:
    virtual ~MidiMessageReceiver() = default;
    virtual void receive(const MidiMessage& message) noexcept REALTIME = 0;
};
