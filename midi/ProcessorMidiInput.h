// The whole MIDI side of a processor: the decoder and the receivers that it feeds.
// Threads: [audio], except construction (main).
#pragma once

#include "midi/DefaultEventReceiver.h"
#include "midi/MidiDecoder.h"

class ProcessorMidiInput final : public MidiMessageReceiver {
public:
    explicit ProcessorMidiInput(GenericPluginProcessor& moved) : events(moved) {} // not owned

    void receive(const MidiMessage& message) noexcept REALTIME override { decoder.receive(message); }
    DefaultEventReceiver& receiver() noexcept { return events; }

private:
    DefaultEventReceiver events;
    MidiDecoder decoder{events};
};
