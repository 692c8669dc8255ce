#include "eq/ConvolverLevel.h"

#include <algorithm>

namespace {

// Of input and kernel, for one channel. Beyond this the second channel drives them out of a cache of 1 or 2 MB.
constexpr std::int64_t nearSpectra = 512 * 1024; // bytes

} // namespace

ConvolverLevel::ConvolverLevel(wave::Environment& owner, const Convolver::Configuration& wanted,
                               Convolver::Kernel* topKernel, std::int32_t firstInSlot)
    : environment(owner)
    , configuration(wanted)
    , kernel(topKernel)
    , firstPartition(static_cast<std::size_t>(firstInSlot))
    , hop(wanted.getHop())
    , scratch(wanted.getPlan().getSize())
    , previousHop(hop)
    , crossfadeBuffer(owner)
    , activePartitions(wanted.getActivePartitions()) {
    const FFTPlan& plan = configuration.getPlan();
    for (std::int32_t count = configuration.getPartitionCount() + 1; count > 0; --count)
        inputBlocks.push_back(std::make_unique<FFTBlock>(plan, scratch));
    for (std::unique_ptr<FFTBlock>& block : outputBlocks)
        block = std::make_unique<FFTBlock>(plan, scratch);
    constexpr std::int64_t bytes = 2 * sizeof(float);
    const std::int64_t spectra = bytes * configuration.getPartitionCount() * plan.getSize();
    scheduler.setPeriod(hop);
    scheduler.add(inputTask);
    for (std::size_t set = 0; set < inverseTasks.size(); ++set) {
        for (std::int32_t first = 0; first < configuration.getPartitionCount(); first += FFTMultiplyTask::mostFactors) {
            multiplyTasks[set].push_back(std::make_unique<FFTMultiplyTask>());
            multiplyTasks[set].back()->accumulate = first > 0;
            multiplyTasks[set].back()->enabled = false;
            if (spectra > nearSpectra)
                multiplyTasks[set].back()->weight = FFTMultiplyTask::farWeight;
            scheduler.add(*multiplyTasks[set].back());
        }
        scheduler.add(inverseTasks[set]);
        inverseTasks[set].enabled = false;
    }
    if (configuration.getChild() != nullptr)
        child = std::make_unique<ConvolverLevel>(owner, *configuration.getChild(), nullptr,
                                                 firstInSlot + configuration.getPartitionCount());
}

void ConvolverLevel::Reading::set(Convolver::Slot* wanted) noexcept REALTIME {
    if (wanted != nullptr)
        ++wanted->readers;
    if (slot != nullptr)
        --slot->readers;
    slot = wanted;
}

void ConvolverLevel::reset(std::int32_t offset) noexcept REALTIME {
    clear();
    hopBoundary(offset);
}

void ConvolverLevel::clear() noexcept REALTIME {
    if (child != nullptr)
        child->clear();
    scheduler.stop();
    filledHops = 0;
    positionInHop = 0;
    crossfadePending = 0;
    crossfadeLeft = 0;
    current.set(nullptr);
    outgoing.set(nullptr);
    pending.set(nullptr);
}

void ConvolverLevel::follow(const ConvolverLevel* wanted, std::uint64_t fresh) noexcept REALTIME {
    leader = wanted;
    firstFresh = fresh;
}

std::int64_t ConvolverLevel::getWorkEverDone() const noexcept REALTIME {
    return scheduler.getWorkEverDone() + (child != nullptr ? child->getWorkEverDone() : 0);
}

bool ConvolverLevel::partitionsChanged() noexcept REALTIME {
    bool changed = activePartitions != configuration.getActivePartitions();
    activePartitions = configuration.getActivePartitions();
    if (child != nullptr && child->partitionsChanged())
        changed = true;
    return changed;
}

void ConvolverLevel::process(const float* input, const float* delayed, float* output,
                             std::int32_t count) noexcept REALTIME {
    if (partitionsChanged())
        reset(0);
    process(input, delayed, output, count, 0);
}

void ConvolverLevel::process(const float* input, const float* delayed, float* output, std::int32_t count,
                             std::int32_t offset) noexcept REALTIME {
    for (std::int32_t done = 0; done < count;) {
        const std::int32_t span = std::min(count - done, hop - positionInHop);
        if (configuration.getPartitionCount() > 0)
            collect((child != nullptr ? delayed : input) + done, span);
        if (child != nullptr)
            child->process(input + done, delayed + done, output + done, span, offset + done);
        else
            std::fill_n(output + done, span, 0.0f);
        addOutput(output + done, span);
        done += span;
        positionInHop += span;
        if (positionInHop < hop)
            continue;
        ringPosition = (ringPosition + 1) % inputBlocks.size();
        pingPong ^= 1;
        filledHops = std::min(filledHops + 1, activePartitions + 2);
        hopBoundary(offset + done);
    }
}

// A block is the hop before and the present one.
void ConvolverLevel::collect(const float* samples, std::int32_t count) noexcept REALTIME {
    float* const block = inputBlocks[(ringPosition + 1) % inputBlocks.size()]->data();
    float* const previous = previousHop.data() + positionInHop;
    if (filledHops > 0)
        std::copy_n(previous, count, block + positionInHop);
    else
        std::fill_n(block + positionInHop, count, 0.0f);
    std::copy_n(samples, count, block + hop + positionInHop);
    std::copy_n(samples, count, previous);
    if (filledHops > 0)
        scheduler.advance(count);
}

void ConvolverLevel::addOutput(float* output, std::int32_t count) noexcept REALTIME {
    if (filledHops < 2)
        return;
    const FFTBlock& made = *outputBlocks[1 - pingPong];
    const std::int32_t place = hop + positionInHop;
    const std::int32_t fading = std::min(crossfadeLeft, count);
    if (fading > 0) {
        float* const old = crossfadeBuffer.data();
        outputBlocks[3 - pingPong]->readScaled(place, old, fading);
        const float scale = configuration.getPlan().getScale();
        const float* const fresh = made.data() + place;
        const double step = (1.0 - crossfadePosition) / crossfadeLeft;
        for (std::int32_t index = 0; index < fading; ++index) {
            const auto share = static_cast<float>(crossfadePosition + step * index);
            output[index] += old[index] + (fresh[index] * scale - old[index]) * share;
        }
        crossfadePosition += step * fading;
        crossfadeLeft -= fading;
    }
    made.addScaled(place + fading, output + fading, count - fading);
}

void ConvolverLevel::hopBoundary(std::int32_t offset) noexcept REALTIME {
    if (kernel != nullptr && leader == nullptr)
        kernel->hopBoundary(offset);
    if (crossfadeLeft == 0 && crossfadePending > 0) {
        crossfadeLeft = crossfadePending;
        crossfadePosition = 0.0;
    }
    positionInHop = 0;
    crossfadePending = std::max(crossfadePending - hop, 0);
    if (crossfadePending == 0)
        outgoing.set(nullptr);
    if (kernel != nullptr) {
        if (crossfadePending == 0)
            takeKernel();
    } else if (pending.get() != nullptr) {
        if (pendingCountdown == 1) {
            setKernel(*pending.get());
            pending.set(nullptr);
        } else {
            --pendingCountdown;
        }
    }
    if (current.get() != nullptr)
        arrangeTasks();
}

// The leader has run this cycle, so what it has is what it took at this boundary. What is not fresh belongs to other
// bands; only at the begin of a stream there is nothing better.
void ConvolverLevel::takeKernel() noexcept REALTIME {
    Convolver::Slot& offered = leader != nullptr ? *leader->current.get() : kernel->getNewest();
    if (offered.number >= firstFresh || current.get() == nullptr)
        setKernel(offered);
}

void ConvolverLevel::setKernel(Convolver::Slot& slot) noexcept REALTIME {
    if (&slot == current.get())
        return;
    if (filledHops > 1) {
        outgoing.set(current.get());
        if (outgoing.get() != nullptr)
            crossfadePending = configuration.crossfadeSamples(environment.sampleRate);
    }
    current.set(&slot);
    if (child == nullptr)
        return;
    if (outgoing.get() != nullptr) {
        child->pending.set(&slot);
        child->pendingCountdown = hop / child->hop - 1;
    } else {
        child->setKernel(slot);
        child->arrangeTasks();
    }
}

void ConvolverLevel::arrangeTasks() noexcept REALTIME {
    inputTask.block = inputBlocks[ringPosition].get();
    arrangeSet(0, current.get());
    arrangeSet(1, crossfadePending > 0 ? outgoing.get() : nullptr);
    scheduler.reset();
}

// The work of one kernel, or none.
void ConvolverLevel::arrangeSet(std::size_t set, Convolver::Slot* slot) noexcept REALTIME {
    if (slot == nullptr && !inverseTasks[set].enabled)
        return; // as it was
    FFTBlock* const output = outputBlocks[2 * set + pingPong].get();
    const std::size_t ringSize = inputBlocks.size();
    const std::size_t used = slot != nullptr ? static_cast<std::size_t>(std::min(filledHops, activePartitions)) : 0;
    std::size_t partition = 0;
    for (const std::unique_ptr<FFTMultiplyTask>& task : multiplyTasks[set]) {
        task->enabled = partition < used;
        task->block = output;
        task->clear();
        for (const std::size_t end = std::min(partition + FFTMultiplyTask::mostFactors, used); partition < end;
             ++partition)
            task->add(*inputBlocks[(ringPosition + ringSize - partition) % ringSize],
                      *slot->partitions[firstPartition + partition]);
    }
    inverseTasks[set].enabled = used > 0;
    inverseTasks[set].block = output;
}
