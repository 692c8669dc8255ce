// The receivers that a decoder feeds: one for all channels, one a channel, one for the system.
// Threads: set while no decoder runs on it; read by the decoder.
#pragma once

#include "base/Property.h"
#include "base/Realtime.h"
#include "midi/AbstractChannelEventReceiver.h"

#include <array>
#include <cstddef>

class AbstractMusicEventReceiver {
public:
    class SystemReceiver {
    public:
        virtual void systemReset() noexcept REALTIME = 0;

    protected:
        ~SystemReceiver() = default;
    };

    static constexpr std::size_t channelCount = 17; // 0 stands for all channels, 1 to 16 for those of MIDI

    // Null: nobody listens there.
    template <typename Receiver>
    class Slot final : public Property<Receiver*> {
    public:
        Slot() : Property<Receiver*>(nullptr) {}
        using Property<Receiver*>::operator=;
    };

    AbstractMusicEventReceiver() = default;
    AbstractMusicEventReceiver(const AbstractMusicEventReceiver&) = delete;
    AbstractMusicEventReceiver& operator=(const AbstractMusicEventReceiver&) = delete;
    virtual ~AbstractMusicEventReceiver() = default;

    Slot<SystemReceiver> systemReceiver;                                           // not owned
    std::array<Slot<AbstractChannelEventReceiver>, channelCount> channelReceivers; // not owned
};
