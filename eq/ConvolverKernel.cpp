#include "eq/ConvolverKernel.h"

#include <algorithm>

namespace {

std::size_t slotCount(const Convolver::Configuration& configuration) noexcept {
    const std::size_t fading = configuration.getCrossfadeMilliseconds() > 0.0 ? 1 : 0;
    const std::size_t waitingBelow = configuration.getChild() != nullptr ? 1 : 0;
    return 3 + fading + waitingBelow;
}

} // namespace

Convolver::Slot::Slot(const Configuration& configuration,
                      const std::vector<std::unique_ptr<AlignedBuffer<float>>>& scratches)
    : samples(configuration.getKernelLength()) {
    std::size_t depth = 0;
    for (const Configuration* level = &configuration; level != nullptr; level = level->getChild(), ++depth)
        for (std::int32_t partition = 0; partition < level->getPartitionCount(); ++partition)
            partitions.push_back(std::make_unique<FFTBlock>(level->getPlan(), *scratches[depth]));
}

Convolver::Kernel::StoreInputTask::StoreInputTask(std::int32_t first, std::int32_t count)
    : firstSample(first), hop(count) {}

void Convolver::Kernel::StoreInputTask::begin() noexcept REALTIME {
    available = std::clamp(target->length - firstSample, 0, hop);
    source = target->samples.data() + firstSample;
}

Convolver::Kernel::Kernel(wave::Environment& owner, const Configuration& wanted)
    : Component(owner), configuration(wanted) {
    for (const Configuration* level = &configuration; level != nullptr; level = level->getChild())
        scratches.push_back(std::make_unique<AlignedBuffer<float>>(level->getPlan().getSize()));
    for (std::size_t count = slotCount(configuration); count > 0; --count)
        slots.push_back(std::make_unique<Slot>(configuration, scratches));
    for (const Configuration* level = &configuration; level != nullptr; level = level->getChild())
        addPartitions(*level);
}

Convolver::Kernel::~Kernel() = default;

void Convolver::Kernel::addPartitions(const Configuration& level) {
    for (std::int32_t partition = 0; partition < level.getPartitionCount(); ++partition) {
        const std::int32_t firstSample = (partition + level.getFirstHop()) * level.getHop();
        storeTasks.push_back(std::make_unique<StoreInputTask>(firstSample, level.getHop()));
        fftTasks.push_back(std::make_unique<FFTCalculateTask>());
        sequence.add(*storeTasks.back());
        sequence.add(*fftTasks.back());
    }
}

void Convolver::Kernel::add(std::unique_ptr<UpdateTask> task) {
    sequence.insert(updateTasks.size(), *task);
    updateTasks.push_back(std::move(task));
}

void Convolver::Kernel::connect() noexcept {
    for (const std::unique_ptr<Slot>& slot : slots)
        slot->readers = 0;
}

void Convolver::Kernel::takeOver(const Kernel& other) noexcept REALTIME {
    sequence.stop();
    sampleBudget = 0;
    immediate = false;
    dirty = true;
    lastFinished = other.lastFinished;
    everFinished = other.everFinished;
}

void Convolver::Kernel::beginCycle(std::int32_t count, bool streamBroke) noexcept REALTIME {
    immediate = streamBroke;
    cycleCount = count;
    cyclePosition = 0;
    if (immediate || !dynamic)
        sampleBudget = 0;
    if (!dynamic) {
        update(count);
        return;
    }
    const std::int32_t share = std::min(sampleBudget, count);
    advance(share);
    sampleBudget -= share;
}

void Convolver::Kernel::hopBoundary(std::int32_t offset) noexcept REALTIME {
    if (!dynamic)
        return;
    dirty = true;
    cyclePosition = offset;
    const std::int32_t share = std::min(cycleCount - offset, hop());
    update(share);
    cyclePosition += share;
    sampleBudget = hop() - share;
}

void Convolver::Kernel::update(std::int32_t samples) noexcept REALTIME {
    const std::int32_t active = configuration.activePartitionsOfAllLevels();
    if (active != lastActive || environment.sampleRate < lastSampleRate || environment.sampleRate > lastSampleRate) {
        lastActive = active;
        lastSampleRate = environment.sampleRate;
        enablePartitions();
        dirty = true;
    }
    if (immediate && sequence.isRunning())
        dirty = true;
    // A sequence that runs is brought to its end: restarted with every change, it would never get there.
    if (dirty && (immediate || !sequence.isRunning())) {
        const std::size_t slot = freeSlot();
        if (slot < slots.size())
            start(slot);
    }
    advance(samples);
}

void Convolver::Kernel::enablePartitions() noexcept REALTIME {
    std::size_t number = 0;
    for (const Configuration* level = &configuration; level != nullptr; level = level->getChild())
        for (std::int32_t partition = 0; partition < level->getPartitionCount(); ++partition, ++number) {
            const bool enabled = partition < level->getActivePartitions();
            storeTasks[number]->enabled = enabled;
            fftTasks[number]->enabled = enabled;
        }
}

// After a break all levels drop what they read before they read again.
std::size_t Convolver::Kernel::freeSlot() const noexcept REALTIME {
    for (std::size_t step = 1; step < slots.size(); ++step) {
        const std::size_t slot = (newest + step) % slots.size();
        if (immediate || slots[slot]->readers == 0)
            return slot;
    }
    return slots.size();
}

void Convolver::Kernel::start(std::size_t slot) noexcept REALTIME {
    next = slot;
    Slot& target = *slots[slot];
    target.number = ++started;
    for (const std::unique_ptr<UpdateTask>& task : updateTasks)
        task->target = &target;
    for (std::size_t partition = 0; partition < fftTasks.size(); ++partition) {
        storeTasks[partition]->target = &target;
        storeTasks[partition]->block = target.partitions[partition].get();
        fftTasks[partition]->block = target.partitions[partition].get();
    }
    sequence.setPeriod(periodFor());
    sequence.reset();
    dirty = false;
}

// No kernel is complete before the crossfade to the one before it is over.
std::int32_t Convolver::Kernel::periodFor() const noexcept REALTIME {
    if (immediate)
        return hop();
    const std::int32_t hops = (configuration.getKernelLength() + hop() - 1) / hop();
    const std::int32_t usual = std::max(hops / configuration.getUpdateDivisor(), 1) * hop();
    if (!everFinished)
        return usual;
    const std::int32_t fade = (hop() + configuration.crossfadeSamples(environment.sampleRate) - 1) / hop() * hop();
    const std::int64_t fadeLeft =
        static_cast<std::int64_t>(lastFinished) + fade - static_cast<std::int64_t>(environment.position);
    return static_cast<std::int32_t>(std::max<std::int64_t>(usual, fadeLeft));
}

void Convolver::Kernel::advance(std::int32_t samples) noexcept REALTIME {
    if (!sequence.advance(samples))
        return;
    newest = next;
    lastFinished = environment.position;
    everFinished = true;
    immediate = false;
    Slot& finished = *slots[newest];
    const std::int32_t whole = std::min((finished.length + 3) & -4, finished.samples.getCapacity());
    std::fill(finished.samples.data() + finished.length, finished.samples.data() + whole, 0.0f);
}
