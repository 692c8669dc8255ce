#include "wave/FFTBlock.h"

#include "base/ReleaseAssert.h"

#include <algorithm>

FFTBlock::FFTBlock(const FFTPlan& wanted)
    : plan(wanted), samples(wanted.getSize()), ownScratch(wanted.getSize()), scratch(ownScratch) {}

FFTBlock::FFTBlock(const FFTPlan& wanted, AlignedBuffer<float>& sharedScratch)
    : plan(wanted), samples(wanted.getSize()), scratch(sharedScratch) {
    release_assert(scratch.getCapacity() >= plan.getSize());
}

void FFTBlock::begin() noexcept REALTIME {
    stage = 0;
    stageWork = 0;
    stageGroups = 0;
}

void FFTBlock::advance(std::int32_t units) noexcept REALTIME {
    advance(plan.getForward(), units, false);
}

void FFTBlock::advanceInverse(std::int32_t units) noexcept REALTIME {
    advance(plan.getInverse(), units, true);
}

void FFTBlock::transform() noexcept REALTIME {
    begin();
    advance(plan.getTotalWork());
}

void FFTBlock::transformInverse() noexcept REALTIME {
    begin();
    advanceInverse(plan.getTotalWork());
}

void FFTBlock::clear() noexcept REALTIME {
    samples.clear();
}

void FFTBlock::readScaled(std::int32_t offset, float* out, std::int32_t count) const noexcept REALTIME {
    const float scale = plan.getScale();
    const float* const from = samples.data() + offset;
    for (std::int32_t index = 0; index < count; ++index)
        out[index] = from[index] * scale;
}

void FFTBlock::addScaled(std::int32_t offset, float* out, std::int32_t count) const noexcept REALTIME {
    const float scale = plan.getScale();
    const float* const from = samples.data() + offset;
    for (std::int32_t index = 0; index < count; ++index)
        out[index] += from[index] * scale;
}

// Every stage but that of the split goes from one array to the other. The split also works in place, and does so
// whenever that lets the whole begin and end in the same array.
void FFTBlock::advance(std::span<const FFTPlan::Stage> stages, std::int32_t units, bool inverse) noexcept REALTIME {
    while (units > 0 && stage < stages.size()) {
        const FFTPlan::Stage& present = stages[stage];
        const std::int32_t share = std::min(units, present.work - stageWork);
        stageWork += share;
        units -= share;
        const auto reached =
            static_cast<std::int32_t>(static_cast<std::int64_t>(present.groups) * stageWork / present.work);
        if (reached > stageGroups) {
            const std::size_t left = stages.size() - 1 - stage;
            const bool intoScratch = inverse ? left % 2 != 0 : left > 0 && stage % 2 == 0;
            const bool fromScratch = inverse ? stage > 0 && left % 2 == 0 : stage % 2 != 0;
            present.pass(present.layout, fromScratch ? scratch.data() : samples.data(),
                         intoScratch ? scratch.data() : samples.data(), stageGroups, reached);
            stageGroups = reached;
        }
        if (stageWork == present.work) {
            ++stage;
            stageWork = 0;
            stageGroups = 0;
        }
    }
}
