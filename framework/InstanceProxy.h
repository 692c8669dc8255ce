// How one instance reads the audio of another without a pointer to it: by its id, anew at each look. An instance that
// has gone reads as empty.
// Threads: those of one reader. The other instance may be used by any thread meanwhile.
#pragma once

#include "framework/AudioSourceProxy.h"
#include "framework/GenericPlugin.h"
#include "wave/AudioSource.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

// Locking a source takes the process-wide lock and then that of the ring, and keeps both until it is unlocked: so the
// instance cannot go away in between, and nothing moves that is being read. Look briefly.
class GenericPlugin::InstanceProxy {
public:
    class InstanceAudioSource;

    InstanceProxy(std::int32_t id, std::size_t sourceCount, std::size_t position = 0);
    ~InstanceProxy();
    InstanceProxy(const InstanceProxy&) = delete;
    InstanceProxy& operator=(const InstanceProxy&) = delete;

    // Has the audio sent when nobody else does, for those who look from other threads. On the main thread each lock of
    // a source does it by itself.
    void refresh(); // [main]

    std::int32_t instanceId() const noexcept { return wantedId; }
    std::string name(); // empty: it has gone
    std::size_t sourceCount() const noexcept { return sources.size(); }
    AudioSource& source(std::size_t index) noexcept; // as the other instance counts them

private:
    GenericPlugin* find() noexcept; // under processSection; null: there is none

    const std::int32_t wantedId;
    std::size_t positionHint; // where it was in the list of instances
    std::vector<std::unique_ptr<InstanceAudioSource>> sources;
};

class GenericPlugin::InstanceProxy::InstanceAudioSource final : public AudioSource {
public:
    InstanceAudioSource(InstanceProxy& owningProxy, std::size_t ownIndex) : owner(owningProxy), index(ownIndex) {}

    void lock() override;
    void unlock() override;
    std::size_t blockSize() const override { return proxy != nullptr ? proxy->blockSize() : 0; }
    std::span<const float> blockData(std::size_t blockIndex, std::size_t channel) const override;
    std::size_t blockCount() const override { return newBlocks; } // since the last lock
    std::size_t channelCount() const override { return proxy != nullptr ? proxy->channelCount() : 0; }

private:
    static constexpr std::int64_t never = -1;

    void take(AudioSourceProxy& source);

    InstanceProxy& owner;
    const std::size_t index;
    AudioSourceProxy* proxy = nullptr; // while locked; not owned
    std::size_t blockOffset = 0;       // of the first new block
    std::size_t newBlocks = 0;
    std::int64_t lastCounter = never; // of received blocks, at the last lock
    std::int32_t lockCount = 0;
};
