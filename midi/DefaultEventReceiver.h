// The receivers of an audio side: one for one channel, or for all.
// Threads: [audio]; the channel changes while the decoder does not run.
#pragma once

#include "base/Property.h"
#include "midi/AbstractMusicEventReceiver.h"
#include "midi/DefaultChannelEventReceiver.h"

#include <cstddef>
#include <cstdint>

class GenericPluginProcessor;

class DefaultEventReceiver final : public AbstractMusicEventReceiver, private PropertyOwner {
public:
    explicit DefaultEventReceiver(GenericPluginProcessor& moved);

    LimitedProperty<std::int32_t> channel{this, 0, static_cast<std::int32_t>(channelCount) - 1, 0}; // 0: all channels
    DefaultChannelEventReceiver& channelReceiver() noexcept { return events; }

private:
    void propertyChanged(AbstractProperty&) override;

    DefaultChannelEventReceiver events;
    std::size_t installed = 0; // where the receiver stands
};
