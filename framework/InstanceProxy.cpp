#include "framework/InstanceProxy.h"

#include "framework/PluginInstances.h"
#include "framework/ReceivedSources.h"
#include "platform/CriticalSections.h"

#include <algorithm>

namespace {

// How many sources of other instances this thread holds. While it holds one it exchanges for none: the rings that it
// reads must stay as they are, and the adapter lock comes before theirs.
thread_local int heldSources = 0;

} // namespace

GenericPlugin::InstanceProxy::InstanceProxy(std::int32_t id, std::size_t sourceCount, std::size_t position)
    : wantedId(id), positionHint(position) {
    for (std::size_t index = 0; index < sourceCount; ++index)
        sources.push_back(std::make_unique<InstanceAudioSource>(*this, index));
}

GenericPlugin::InstanceProxy::~InstanceProxy() = default;

GenericPlugin* GenericPlugin::InstanceProxy::find() noexcept {
    return PluginInstances::ofProcess().find(wantedId, positionHint);
}

AudioSource& GenericPlugin::InstanceProxy::source(std::size_t index) noexcept {
    return *sources[index];
}

std::string GenericPlugin::InstanceProxy::name() {
    const ScopedLock guard(processSection());
    const GenericPlugin* const instance = find();
    return instance != nullptr ? instance->instanceName() : std::string();
}

void GenericPlugin::InstanceProxy::refresh() {
    const ScopedLock guard(processSection());
    if (GenericPlugin* const instance = find(); instance != nullptr && heldSources == 0)
        instance->exchangeForOthers();
}

void GenericPlugin::InstanceProxy::InstanceAudioSource::lock() {
    if (++lockCount > 1)
        return;
    processSection().enter(); // until unlock
    if (GenericPlugin* const instance = owner.find(); instance != nullptr) {
        if (heldSources == 0)
            instance->exchangeForOthers();
        if (index < instance->sources().audioCount())
            take(instance->sources().audio(index));
    }
    ++heldSources;
}

void GenericPlugin::InstanceProxy::InstanceAudioSource::take(AudioSourceProxy& source) {
    proxy = &source;
    proxy->ringSection().enter(); // until unlock
    const std::int64_t counter = proxy->receivedBlocks();
    const std::int64_t fresh = lastCounter == never ? 0 : std::max<std::int64_t>(counter - lastCounter, 0);
    newBlocks = std::min(static_cast<std::size_t>(fresh), proxy->heldBlocks());
    blockOffset = proxy->writePosition() + proxy->ringBlocks() - newBlocks;
    lastCounter = counter;
}

void GenericPlugin::InstanceProxy::InstanceAudioSource::unlock() {
    if (--lockCount > 0)
        return;
    if (proxy != nullptr)
        proxy->ringSection().leave();
    proxy = nullptr;
    newBlocks = blockOffset = 0;
    --heldSources;
    processSection().leave();
}

std::span<const float> GenericPlugin::InstanceProxy::InstanceAudioSource::blockData(std::size_t blockIndex,
                                                                                    std::size_t channel) const {
    return proxy->blockAt(blockIndex + blockOffset, channel);
}
