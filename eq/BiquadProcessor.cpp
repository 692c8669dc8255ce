#include "eq/BiquadProcessor.h"

#include "base/ReleaseAssert.h"
#include "wave/Environment.h"

#include <algorithm>

namespace {

constexpr float fadeSeconds = 0.02f;
constexpr std::size_t rowLength = BiquadSection::rowLength;
static_assert(rowLength == sectionLength, "the design fills what the kernels read");
constexpr std::size_t memoryLength = BiquadSection::memoryLength;

std::size_t mostRuns(const wave::Environment& environment, std::int32_t granularity) {
    release_assert(granularity > 0);
    return static_cast<std::size_t>(environment.getMaxBlockSize() / granularity);
}

std::int32_t fadeLength(const wave::Environment& environment) noexcept {
    return static_cast<std::int32_t>(fadeSeconds * environment.sampleRate);
}

} // namespace

BiquadProcessor::BiquadProcessor(wave::Environment& owner, std::size_t sections, std::int32_t granularity)
    : BiquadProcessor(owner, sections,
                      std::make_unique<Queues>(Queues{RowQueue(mostRuns(owner, granularity), sections * rowLength),
                                                      ScaleQueue(mostRuns(owner, granularity), 1)})) {}

BiquadProcessor::BiquadProcessor(wave::Environment& owner, std::size_t sections, std::unique_ptr<Queues> queues)
    : environment(owner)
    , ownQueues(std::move(queues))
    , rows(&ownQueues->rows)
    , scales(&ownQueues->scales)
    , memory(static_cast<std::int32_t>(sections * memoryLength))
    , fade(sections) {
    release_assert(sections > 0 && sections <= maxSections);
}

BiquadProcessor::BiquadProcessor(wave::Environment& owner, std::size_t sections, BiquadProcessor& queueOwner)
    : environment(owner)
    , rows(queueOwner.rows)
    , scales(queueOwner.scales)
    , memory(static_cast<std::int32_t>(sections * memoryLength))
    , fade(sections) {
    release_assert(sections > 0 && sections * rowLength <= rows->getLongestRow());
}

BiquadProcessor::~BiquadProcessor() {
    link(nullptr);
}

void BiquadProcessor::setEnabled(bool wanted) noexcept REALTIME {
    if (wanted == enabled)
        return;
    switchTo(wanted);
    if (partner != nullptr)
        partner->switchTo(wanted);
}

void BiquadProcessor::switchTo(bool wanted) noexcept REALTIME {
    if (wanted == enabled)
        return;
    enabled = wanted;
    mixTarget = wanted ? 1.0f : 0.0f;
    const bool unheard = environment.position == environment.lastResetPosition;
    rampCount = unheard ? 0 : fadeLength(environment);
    if (rampCount > 0)
        rampStep = (mixTarget - mix) / static_cast<float>(rampCount);
    else
        mix = mixTarget;
    stamp = std::max(stamp, environment.position);
}

void BiquadProcessor::setForm(SectionForm wanted, const double* rowsInUse) noexcept REALTIME {
    changeForm(wanted, rowsInUse);
    if (partner != nullptr)
        partner->changeForm(wanted, rowsInUse);
}

void BiquadProcessor::changeForm(SectionForm wanted, const double* rowsInUse) noexcept REALTIME {
    if (wanted == form)
        return;
    if (pendingReset == PendingReset::none)
        for (std::size_t s = 0; s < sectionCount; ++s)
            convertSectionMemory(form, rowsInUse + s * rowLength, memoryOf(s));
    form = wanted;
}

void BiquadProcessor::link(BiquadProcessor* other) noexcept REALTIME {
    if (partner != nullptr)
        partner->partner = nullptr;
    partner = other;
    if (other != nullptr)
        other->partner = this;
}

void BiquadProcessor::requestReset() noexcept REALTIME {
    if (pendingReset == PendingReset::none)
        pendingReset = PendingReset::soft;
}

void BiquadProcessor::interrupt() noexcept REALTIME {
    requestReset();
    fade.drop();
}

void BiquadProcessor::replace(const double* rowsInUse, float scaleInUse) noexcept REALTIME {
    const bool heard = environment.position != environment.lastResetPosition && isHeard() &&
                       (partner == nullptr || partner->isHeard());
    for (BiquadProcessor* const each : {this, partner}) {
        if (each == nullptr)
            continue;
        // A reset that is pending in the middle of a sound: nothing has run, the scale was 0.
        const float scale = each->pendingReset == PendingReset::none ? scaleInUse : 0.0f;
        if (heard)
            each->fade.begin({rowsInUse, each->memory.data(), each->sectionCount, each->form, scale},
                             fadeLength(environment));
        else
            each->fade.drop();
        each->requestReset();
    }
}

void BiquadProcessor::reset() noexcept REALTIME {
    pendingReset = PendingReset::hard;
    hasSounded = false;
    fade.drop();
    rampCount = 0;
    mix = mixTarget;
}

void BiquadProcessor::setSectionCount(std::size_t wanted) noexcept REALTIME {
    sectionCount = std::min(wanted, static_cast<std::size_t>(memory.getCapacity()) / memoryLength);
    rows->setRowLength(sectionCount * rowLength);
    if (partner != nullptr)
        partner->sectionCount = sectionCount;
}

void BiquadProcessor::beginBlock(const wave::BasicBlock<float>& inputBlock, wave::BasicBlock<float>& ownBlock,
                                 std::int32_t count) noexcept REALTIME {
    const std::uint64_t position = environment.position;
    std::int32_t skipped = rampCount;
    if (stamp > environment.lastResetPosition) {
        const std::uint64_t unheard = position > stamp ? position - stamp : 0;
        skipped = static_cast<std::int32_t>(std::min(unheard, static_cast<std::uint64_t>(rampCount)));
    }
    rampCount -= skipped;
    mix = rampCount > 0 ? mix + static_cast<float>(skipped) * rampStep : mixTarget;

    input = result = &inputBlock;
    own = &ownBlock;
    samplePosition = 0;
    stamp = position + static_cast<std::uint64_t>(count);
}

void BiquadProcessor::enqueue(std::int32_t count, const double* row, float scale) noexcept REALTIME {
    rows->enqueue(count, row);
    scales->enqueue(count, &scale);
}

double* BiquadProcessor::enqueueSingles(std::int32_t count, float scale) noexcept REALTIME {
    double* const first = rows->appendSingles(count);
    if (first != nullptr)
        scales->enqueue(count, &scale);
    return first;
}

void BiquadProcessor::process(std::int32_t count) noexcept REALTIME {
    const bool passes = isOff() || scales->holdsOnly(0.0f);
    for (BiquadProcessor* const each : {this, partner}) {
        if (each == nullptr)
            continue;
        each->hasSounded = true;
        if (isOff())
            each->fade.drop();
        if (!passes || each->isFading())
            each->moveToOwnBlock();
        if (passes)
            each->passThrough(count);
        else
            each->fillMemory();
    }
    if (!passes)
        runSections();
    if (!passes || isFading())
        mixChannels(count);
    samplePosition += count;
    if (partner != nullptr)
        partner->samplePosition += count;
    rows->restart();
    scales->restart();
}

void BiquadProcessor::passThrough(std::int32_t count) noexcept REALTIME {
    requestReset();
    if (inputGain != nullptr)
        moveToOwnBlock();
    if (result != own)
        return;
    const float* const in = input->data();
    float* const out = own->data();
    const std::int32_t end = samplePosition + count;
    if (inputGain == nullptr)
        std::copy(in + samplePosition, in + end, out + samplePosition);
    else
        for (std::int32_t i = samplePosition; i < end; ++i)
            out[i] = in[i] * inputGain[i];
}

void BiquadProcessor::moveToOwnBlock() noexcept REALTIME {
    if (result == own)
        return;
    std::copy_n(input->data(), samplePosition, own->data());
    own->isConstant = 0;
    result = own;
}

void BiquadProcessor::fillMemory() noexcept REALTIME {
    if (pendingReset == PendingReset::none)
        return;
    const bool follow = resetMode.get() == ResetMode::resetFollowInput && pendingReset == PendingReset::soft &&
                        form == SectionForm::direct;
    const double value = follow ? static_cast<double>((*input)[samplePosition]) : 0.0;
    std::fill_n(memory.data(), sectionCount * memoryLength, value);
    pendingReset = PendingReset::none;
}

void BiquadProcessor::runSections() noexcept REALTIME {
    std::array<BiquadSection, maxSections> sections;
    for (std::size_t s = 0; s < sectionCount; ++s)
        sections[s] = {rows->front() + s * rowLength,
                       {memoryOf(s), partner != nullptr ? partner->memoryOf(s) : nullptr}};
    const std::span<const std::uint32_t> runs = rows->runLengths();
    BiquadPass pass{.sections = sections.data(),
                    .sectionCount = sectionCount,
                    .runLengths = runs.data(),
                    .runCount = runs.size(),
                    .rowStride = rows->getRowLength(),
                    .input = {input->data() + samplePosition, nullptr},
                    .output = {own->data() + samplePosition, nullptr}};
    if (partner != nullptr) {
        pass.input[1] = partner->input->data() + samplePosition;
        pass.output[1] = partner->own->data() + samplePosition;
    }
    const BiquadKernels& kernels = biquadKernels();
    const BiquadKernel* const kernel = form == SectionForm::direct ? kernels.direct : kernels.stateVariable;
    trustedRealtime([&] { kernel[partner != nullptr ? 1 : 0](pass); });
}

// The replaced cascades have scales of their own, the switch is one for all: so the scales come before the fade and the
// switch behind it.
void BiquadProcessor::mixChannels(std::int32_t count) noexcept REALTIME {
    if (isFullyOn() && !isFading() && scales->holdsOnly(1.0f))
        return;
    const bool fades = isFading();
    const std::span<const std::uint32_t> runs = scales->runLengths();
    std::int32_t begin = samplePosition;
    for (std::size_t r = 0; r < runs.size(); ++r) {
        const auto run = static_cast<std::int32_t>(runs[r]);
        const auto scale = static_cast<double>(*scales->row(r));
        if (fades)
            blend(begin, run, scale, 0.0);
        else
            mixRun(begin, run, scale);
        begin += run;
    }
    if (!fades)
        return;
    fadeFromReplaced(count);
    mixRun(samplePosition, count, 1.0);
}

void BiquadProcessor::mixRun(std::int32_t begin, std::int32_t count, double scale) noexcept REALTIME {
    const std::int32_t ramped = std::min(count, rampCount);
    if (ramped > 0) {
        blend(begin, ramped, scale * static_cast<double>(mix), scale * static_cast<double>(rampStep));
        rampCount -= ramped;
        mix = rampCount > 0 ? mix + static_cast<float>(ramped) * rampStep : mixTarget;
    }
    blend(begin + ramped, count - ramped, scale * static_cast<double>(mix), 0.0);
    if (partner != nullptr) {
        partner->rampCount = rampCount;
        partner->mix = mix;
    }
}

void BiquadProcessor::fadeFromReplaced(std::int32_t count) noexcept REALTIME {
    std::array<CascadeFade::Channel, 2> channels{};
    std::size_t used = 0;
    for (BiquadProcessor* const each : {this, partner})
        if (each != nullptr) {
            channels[used] = {&each->fade, each->dry().from(samplePosition), each->own->data() + samplePosition,
                              environment.scratchBlocks[used].data()};
            ++used;
        }
    fade.process({channels.data(), used}, count);
}

// Both channels of a pair, share rising by step with each sample.
void BiquadProcessor::blend(std::int32_t begin, std::int32_t count, double share, double step) noexcept REALTIME {
    for (const BiquadProcessor* const each :
         {static_cast<const BiquadProcessor*>(this), static_cast<const BiquadProcessor*>(partner)})
        if (each != nullptr)
            mixWithDry(each->dry().from(begin), each->own->data() + begin, count, share, step);
}
