#include "wave/VolumeFilter.h"

#include "base/FloatTolerance.h"
#include "wave/BlockMath.h"

void VolumeFilter::filter(const wave::BasicBlock<float>& inputBlock, wave::BasicBlock<float>& outputBlock,
                          std::int32_t count, std::uint32_t) noexcept REALTIME {
    const wave::BasicBlock<float>& gains = gain.read(count);
    const bool steady = gains.isConstant != 0;
    const float factor = gains[0];
    if (steady && nearlyZero(factor)) {
        output = &environment.zeroBlock;
        return;
    }
    if (steady && modulation == nullptr && nearlyEqual(factor, 1.0f)) {
        output = &inputBlock;
        return;
    }
    const wave::BasicBlock<float>* const moves = modulation != nullptr ? &modulation->pull(count) : nullptr;
    if (steady && inputBlock.isConstant != 0 && (moves == nullptr || moves->isConstant != 0)) {
        outputBlock.fillConstant(inputBlock[0] * factor * (moves != nullptr ? (*moves)[0] : 1.0f), count);
        return;
    }
    outputBlock.isConstant = 0;
    float* const out = outputBlock.data();
    const float* const in = inputBlock.data();
    const float* const g = gains.data();
    const float* const m = moves != nullptr ? moves->data() : nullptr;
    if (steady && m == nullptr)
        wave::mapBlock(
            out, count, [=](float x) { return x * factor; }, in);
    else if (steady)
        wave::mapBlock(
            out, count, [=](float x, float move) { return x * factor * move; }, in, m);
    else if (m == nullptr)
        wave::mapBlock(
            out, count, [](float x, float y) { return x * y; }, in, g);
    else
        wave::mapBlock(
            out, count, [](float x, float y, float move) { return x * y * move; }, in, g, m);
}
