#include "analysis/RealTimeAudioBuffer.h"

#include "base/ReleaseAssert.h"

#include <algorithm>
#include <array>
#include <cmath>

RealTimeAudioBuffer::RealTimeAudioBuffer(wave::Environment& owner, std::size_t channelsOfLayout)
    : Producer(owner), channels(channelsOfLayout), pulled(measurementCount * channelsOfLayout, nullptr) {
    groups.reserve(largestGroupCount);
    consumed.reserve(largestGroupCount);
    addGroups();
    environment.sampleRateChanged.add(this, &RealTimeAudioBuffer::sampleRateChanged);
    setSchedule(Schedule::tail);
}

RealTimeAudioBuffer::~RealTimeAudioBuffer() {
    environment.sampleRateChanged.remove(this, &RealTimeAudioBuffer::sampleRateChanged);
}

void RealTimeAudioBuffer::setUp() {
    release_assert(measurements.empty());
    for (std::size_t index = 0; index < measurementCount; ++index)
        measurements.push_back(createMeasurement(static_cast<std::int32_t>(index)));
}

std::unique_ptr<RealTimeAudioBuffer::Measurement> RealTimeAudioBuffer::createMeasurement(std::int32_t index) {
    return std::make_unique<Measurement>(*this, index);
}

void RealTimeAudioBuffer::process(wave::BasicBlock<float>&, std::int32_t count, std::uint32_t) noexcept REALTIME {
    if (pauses.load(std::memory_order_relaxed) != 0)
        return;
    std::size_t place = 0;
    for (const auto& each : measurements)
        for (std::size_t channel = 0; channel < channels; ++channel)
            pulled[place++] = &pullOrSilence(each->input(channel), environment, count);

    const auto length = static_cast<std::size_t>(count);
    for (std::size_t taken = 0; taken < length;) {
        if (currentGroup == none && !takeGroup())
            return;
        const std::size_t samples = std::min(blockSize - fillPosition, length - taken);
        fill(groups[static_cast<std::size_t>(currentGroup)], taken, samples);
        taken += samples;
        fillPosition += samples;
        if (fillPosition == blockSize) {
            fillPosition = 0;
            // The queue has room for every group there can be; if it had not, the group would be filled again.
            if (filledQueue.pushRealtime(currentGroup))
                currentGroup = none;
        }
    }
}

// Silence is only noted, above all that of a side chain which is not connected. A block gets its samples from the first
// that sounds on.
void RealTimeAudioBuffer::fill(Group& group, std::size_t taken, std::size_t count) noexcept REALTIME {
    float* target = group.samples.data();
    for (std::size_t place = 0; place < pulled.size(); ++place, target += blockSize) {
        const wave::BasicBlock<float>& from = *pulled[place];
        std::uint8_t& silent = group.silent[place];
        const bool adds = from.isConstant == 0 || from.data()[0] != 0.0f;
        if (fillPosition == 0)
            silent = adds ? 0 : 1;
        if (!adds && silent != 0)
            continue;
        if (silent != 0) {
            std::fill_n(target, fillPosition, 0.0f);
            silent = 0;
        }
        std::copy_n(from.data() + taken, count, target + fillPosition);
    }
}

bool RealTimeAudioBuffer::takeGroup() noexcept REALTIME {
    if (freeQueue.pop(currentGroup))
        return true;
    if (!stopWhenFull && filledQueue.pop(currentGroup))
        return true;
    currentGroup = none;
    if (stopWhenFull)
        pauses.fetch_or(overflowed, std::memory_order_release);
    return false;
}

void RealTimeAudioBuffer::lockGroups() {
    if (++lockCount > 1)
        return;
    const bool stale = (pauses.fetch_and(~overflowed, std::memory_order_acquire) & overflowed) != 0;
    // The audio thread may fill while this drains: at most one pass over the pool, so that it ends.
    std::int32_t group = none;
    for (std::size_t left = groups.size(); left > 0 && filledQueue.pop(group); --left) {
        if (!stale)
            consumed.push_back(group);
        else
            release_assert(freeQueue.push(group));
    }
}

void RealTimeAudioBuffer::unlockGroups() {
    if (--lockCount > 0)
        return;
    for (const std::int32_t group : consumed)
        release_assert(freeQueue.push(group));
    consumed.clear();
}

void RealTimeAudioBuffer::followActivity() {
    const bool watched =
        std::any_of(measurements.begin(), measurements.end(), [](const auto& each) { return each->active.get(); });
    if (watched)
        pauses.fetch_and(~unwatched, std::memory_order_relaxed);
    else
        pauses.fetch_or(unwatched, std::memory_order_relaxed);
}

void RealTimeAudioBuffer::sampleRateChanged() {
    std::int32_t group = none;
    while (filledQueue.pop(group))
        release_assert(freeQueue.push(group));
    if (currentGroup != none)
        release_assert(freeQueue.push(currentGroup));
    currentGroup = none;
    fillPosition = 0;
    addGroups();
}

void RealTimeAudioBuffer::addGroups() {
    constexpr double baseRate = 96000.0; // Hz that the base count is meant for
    const double factor = std::max(1.0, std::min<double>(environment.sampleRate, 8.0 * baseRate) / baseRate);
    const auto wanted = static_cast<std::size_t>(std::lround(static_cast<double>(baseGroupCount) * factor));
    while (groups.size() < wanted) {
        groups.emplace_back(measurementCount * channels);
        release_assert(freeQueue.push(static_cast<std::int32_t>(groups.size() - 1)));
    }
}

RealTimeAudioBuffer::Measurement::Measurement(RealTimeAudioBuffer& owner, std::int32_t ownIndex)
    : active(this, true), buffer(owner), index(ownIndex), inputs(owner.channels, nullptr) {}

std::span<const float> RealTimeAudioBuffer::Measurement::blockData(std::size_t blockIndex, std::size_t channel) const {
    static constexpr std::array<float, RealTimeAudioBuffer::blockSize> silence{};
    const Group& group = buffer.groups[static_cast<std::size_t>(buffer.consumed[blockIndex])];
    const std::size_t place = buffer.placeOf(static_cast<std::size_t>(index), channel);
    if (group.silent[place] != 0)
        return silence;
    return {group.samples.data() + place * RealTimeAudioBuffer::blockSize, RealTimeAudioBuffer::blockSize};
}
