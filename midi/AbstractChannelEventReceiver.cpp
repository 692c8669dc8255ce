#include "midi/AbstractChannelEventReceiver.h"

namespace {

constexpr std::int32_t modWheelController = 1;

} // namespace

void AbstractChannelEventReceiver::addListener(Listener& listener) {
    listeners.push_back(&listener);
}

void AbstractChannelEventReceiver::removeListener(Listener& listener) {
    std::erase(listeners, &listener);
}

void AbstractChannelEventReceiver::rawMessage(std::uint8_t, std::uint8_t, std::uint8_t) noexcept REALTIME {}

void AbstractChannelEventReceiver::channelPressure(float pressure) noexcept REALTIME {
    for (Listener* const listener : listeners)
        listener->channelPressure(pressure);
}

void AbstractChannelEventReceiver::polyPressure(std::int32_t note, float pressure) noexcept REALTIME {
    for (Listener* const listener : listeners)
        listener->polyPressure(note, pressure);
}

void AbstractChannelEventReceiver::controlChange(std::int32_t controller, std::int32_t raw,
                                                 float value) noexcept REALTIME {
    for (Listener* const listener : listeners) {
        listener->controlChange(controller, raw, value);
        if (controller == modWheelController)
            listener->modWheel(value);
    }
}

void AbstractChannelEventReceiver::noteOff(std::int32_t note, float velocity) noexcept REALTIME {
    for (Listener* const listener : listeners)
        listener->noteOff(note, velocity);
}

void AbstractChannelEventReceiver::noteOn(std::int32_t note, float velocity) noexcept REALTIME {
    for (Listener* const listener : listeners)
        listener->noteOn(note, velocity);
}

void AbstractChannelEventReceiver::pitchBend(float position) noexcept REALTIME {
    for (Listener* const listener : listeners)
        listener->pitchBend(position);
}

void AbstractChannelEventReceiver::programChange(std::int32_t, std::int32_t) noexcept REALTIME {}
