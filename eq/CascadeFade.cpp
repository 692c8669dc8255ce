#include "eq/CascadeFade.h"

#include "eq/BiquadKernels.h"

#include <algorithm>

namespace {

constexpr std::size_t maxSections = 8;
constexpr std::size_t memoryLength = BiquadSection::memoryLength;

} // namespace

CascadeFade::Slot::Slot(std::size_t mostSections)
    : rows(static_cast<std::int32_t>(mostSections * sectionLength))
    , memory(static_cast<std::int32_t>(mostSections * memoryLength)) {}

CascadeFade::CascadeFade(std::size_t mostSections) : slots{Slot(mostSections), Slot(mostSections)} {}

void CascadeFade::begin(const Cascade& replaced, std::int32_t length) noexcept REALTIME {
    const bool unheard = outgoing == slots.size() || (outgoing == 1 && position == 0);
    if (unheard || length <= 0)
        return;
    if (outgoing == 0) {
        position = 0;
        fadeLength = length;
    }
    Slot& slot = slots[(oldest + outgoing++) % slots.size()];
    std::copy_n(replaced.rows, replaced.sectionCount * sectionLength, slot.rows.data());
    std::copy_n(replaced.memory, replaced.sectionCount * memoryLength, slot.memory.data());
    slot.sectionCount = replaced.sectionCount;
    slot.form = replaced.form;
    slot.scale = replaced.scale;
}

void CascadeFade::process(std::span<const Channel> channels, std::int32_t count) noexcept REALTIME {
    std::int32_t begin = 0;
    while (begin < count && isRunning()) {
        const std::int32_t part = std::min(count - begin, fadeLength - position);
        if (outgoing == slots.size())
            run(oldest ^ 1u, channels, &Channel::filtered, begin, part);
        run(oldest, channels, &Channel::spare, begin, part);
        for (const Channel& channel : channels)
            cross(channel, begin, part);
        begin += part;
        position += part;
        if (position == fadeLength) {
            oldest ^= 1u;
            --outgoing;
            position = 0;
        }
    }
    for (const Channel& channel : channels)
        channel.fade->takeState(*this);
}

void CascadeFade::run(std::size_t slot, std::span<const Channel> channels, float* Channel::*target, std::int32_t begin,
                      std::int32_t count) noexcept REALTIME {
    const Slot& own = slots[slot];
    if (own.scale != 0.0f) {
        std::array<BiquadSection, maxSections> sections;
        const auto length = static_cast<std::uint32_t>(count);
        BiquadPass pass{
            .sections = sections.data(), .sectionCount = own.sectionCount, .runLengths = &length, .runCount = 1};
        for (std::size_t s = 0; s < own.sectionCount; ++s)
            sections[s].row = own.rows.data() + s * sectionLength;
        for (std::size_t c = 0; c < channels.size(); ++c) {
            for (std::size_t s = 0; s < own.sectionCount; ++s)
                sections[s].memory[c] = channels[c].fade->slots[slot].memory.data() + s * memoryLength;
            pass.input[c] = channels[c].dry.samples + begin;
            pass.output[c] = channels[c].*target + begin;
        }
        const BiquadKernels& kernels = biquadKernels();
        const BiquadKernel* const kernel = own.form == SectionForm::direct ? kernels.direct : kernels.stateVariable;
        trustedRealtime([&] { kernel[channels.size() - 1](pass); });
    }
    for (const Channel& channel : channels)
        mixWithDry(channel.dry.from(begin), channel.*target + begin, count, static_cast<double>(own.scale), 0.0);
}

// The smooth step of 5th order. At the ends of a straight line a low tone would be heard to bend, and the slow begin
// hides how the newer cascade rings itself in.
void CascadeFade::cross(const Channel& channel, std::int32_t begin, std::int32_t count) const noexcept REALTIME {
    for (std::int32_t i = begin; i < begin + count; ++i) {
        const double t = static_cast<double>(position + i - begin) / static_cast<double>(fadeLength);
        const double share = t * t * t * (10.0 + t * (6.0 * t - 15.0));
        const auto from = static_cast<double>(channel.spare[i]);
        const auto to = static_cast<double>(channel.filtered[i]);
        channel.filtered[i] = static_cast<float>(from + (to - from) * share);
    }
}

void CascadeFade::takeState(const CascadeFade& leader) noexcept REALTIME {
    oldest = leader.oldest;
    outgoing = leader.outgoing;
    position = leader.position;
    fadeLength = leader.fadeLength;
}
