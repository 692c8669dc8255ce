// The links of an instance: what comes from its audio side, and the list of the other instances.
#include "framework/GenericPlugin.h"
#include "framework/InstanceProxy.h"
#include "framework/PluginInstances.h"
#include "framework/ReceivedSources.h"
#include "framework/chl/Layouts.h"
#include "platform/Clock.h"
#include "platform/CriticalSections.h"

void GenericPlugin::makeSources() {
    const auto channels = chl::channelCount(static_cast<chl::Layout>(layoutIndex));
    received = std::make_unique<ReceivedSources>(sourceCounts, channels, info.has(GenericPluginInfo::midiLearnQueue));
    received->setSampleRate(rate);
}

void GenericPlugin::readSources(ExchangeStream& stream) {
    const InterfaceHold held(*this);
    received->read(stream, held.isWatched());
}

bool GenericPlugin::exchangeWhenDue() {
    const std::uint32_t now = exchangeClock();
    if (adapter == nullptr || (exchanged && now - lastExchange < leastExchangeMs))
        return false;
    lastExchange = now;
    exchanged = true;
    adapter->exchangeSources();
    return true;
}

void GenericPlugin::exchangeForOthers() {
    if (!onMainThread())
        return;
    // Counted as a call of the listener: an interface that opens waits until this is over.
    listenerUse.fetch_add(1);
    if (listener.load() == nullptr)
        static_cast<void>(exchangeWhenDue());
    listenerUse.fetch_sub(1);
}

std::vector<std::unique_ptr<GenericPlugin::InstanceProxy>> GenericPlugin::instanceProxies(const GenericPlugin* except) {
    const ScopedLock lock(processSection());
    const std::vector<GenericPlugin*>& all = PluginInstances::ofProcess().all();
    std::vector<std::unique_ptr<InstanceProxy>> proxies;
    for (std::size_t position = 0; position < all.size(); ++position)
        if (all[position] != except)
            proxies.push_back(std::make_unique<InstanceProxy>(all[position]->instanceId(),
                                                              all[position]->sources().audioCount(), position));
    return proxies;
}

GenericPlugin::InterfaceHold::InterfaceHold(GenericPlugin& plugin) : owner(plugin) {
    owner.listenerUse.fetch_add(1);
    held = owner.listener.load();
    if (held != nullptr)
        held->lockInterface();
}

GenericPlugin::InterfaceHold::~InterfaceHold() {
    if (held != nullptr)
        held->unlockInterface();
    owner.listenerUse.fetch_sub(1);
}
