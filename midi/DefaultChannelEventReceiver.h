// What MIDI does to the audio side: mapped controllers move parameters on their sample, program changes go to the host
// binding.
// Threads: [audio].
#pragma once

#include "midi/AbstractChannelEventReceiver.h"

#include <cstdint>

class GenericPluginProcessor;

class DefaultChannelEventReceiver final : public AbstractChannelEventReceiver {
public:
    explicit DefaultChannelEventReceiver(GenericPluginProcessor& moved) noexcept : processor(moved) {} // not owned

    void controlChange(std::int32_t controller, std::int32_t raw, float value) noexcept REALTIME override;
    void noteOff(std::int32_t note, float velocity) noexcept REALTIME override;
    void noteOn(std::int32_t note, float velocity) noexcept REALTIME override;
    void programChange(std::int32_t bank, std::int32_t program) noexcept REALTIME override;

private:
    void move(std::int32_t target, float value) noexcept REALTIME;

    GenericPluginProcessor& processor;
};
