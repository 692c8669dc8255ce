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
    const float sign = invert ? -1.0f : 1.0f;
    const auto first = [=](float g, float p) { return sign * (g - (p > 0.0f ? p : 0.0f) * g); };
    const auto second = [=](float g, float p) { return sign * ((p < 0.0f ? p : 0.0f) * g + g); };
    if (levels.isConstant != 0 && pans.isConstant != 0) {
        block(0).fillConstant(first(levels[0], pans[0]), count);
        block(1).fillConstant(second(levels[0], pans[0]), count);
        return;
    }
    wave::mapBlock(block(0).data(), count, first, levels.data(), pans.data());
    block(0).isConstant = 0;
    if (centred) {
        chosen[1] = &block(0);
        return;
    }
    wave::mapBlock(block(1).data(), count, second, levels.data(), pans.data());
    block(1).isConstant = 0;
}
