#include "wave/LevelPanConverter.h"

#include "base/FloatTolerance.h"
#include "wave/BlockMath.h"

LevelPanConverter::LevelPanConverter(wave::Environment& owner)
    : MultiProducer(owner, 2)
    , invert(this, false)
    , level(owner, 1.0f, 0.0f, 100000.0f)
    , pan(owner, 0.0f, -1.0f, 1.0f) {}

void LevelPanConverter::processAll(std::span<const wave::BasicBlock<float>*> chosen,
                                   std::int32_t count) noexcept REALTIME {
    const wave::BasicBlock<float>& levels = level.read(count);
    const wave::BasicBlock<float>& pans = pan.read(count);
    const bool centred = pans.isConstant != 0 && nearlyZero(pans[0]);
    if (centred && !invert) {
        chosen[0] = &levels;
        chosen[1] = &levels;
        return;
    }
    const float* const g = levels.data();
    const float* const p = pans.data();
    const float sign = invert ? -1.0f : 1.0f;
    const auto first = [=](std::int32_t i) {
        const float signedLevel = sign * g[i];
        return signedLevel - (p[i] > 0.0f ? p[i] : 0.0f) * signedLevel;
    };
    const auto second = [=](std::int32_t i) {
        const float signedLevel = sign * g[i];
        return (p[i] < 0.0f ? p[i] : 0.0f) * signedLevel + signedLevel;
    };
    if (levels.isConstant != 0 && pans.isConstant != 0) {
        block(0).fillConstant(first(0), count);
        block(1).fillConstant(second(0), count);
        return;
    }
    block(0).isConstant = 0;
    block(1).isConstant = 0;
    if (centred) {
        wave::fillBlock(block(0).data(), count, [=](std::int32_t i) { return -g[i]; });
        chosen[1] = &block(0);
        return;
    }
    wave::fillBlock(block(0).data(), count, first);
    wave::fillBlock(block(1).data(), count, second);
}
