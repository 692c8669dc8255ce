#include "midi/DefaultEventReceiver.h"

DefaultEventReceiver::DefaultEventReceiver(GenericPluginProcessor& moved) : events(moved) {
    channelReceivers[installed] = &events;
}

void DefaultEventReceiver::propertyChanged(AbstractProperty&) {
    channelReceivers[installed] = nullptr;
    installed = static_cast<std::size_t>(channel.get());
    channelReceivers[installed] = &events;
}
