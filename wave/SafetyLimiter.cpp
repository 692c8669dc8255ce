#include "wave/SafetyLimiter.h"

#include "wave/BlockMath.h"

SafetyLimiter::SafetyLimiter(wave::Environment& owner)
    : Filter(owner)
    , attack(this, 1.0f)
    , hold(this, 50.0f)
    , release(this, 250.0f)
    , ceiling(this, -1.0f)
    , forwarder(owner, *this)
    , detector(owner)
    , peakHold(owner)
    , capacitor(owner) {
    detector.input = &forwarder;
    peakHold.input = &detector;
    capacitor.input = &peakHold;
    for (AbstractProperty* property : {&attack, &hold, &release, &ceiling})
        propertyChanged(*property);
}

void SafetyLimiter::propertyChanged(AbstractProperty& changed) {
    constexpr float secondsPerMs = 0.001f;
    if (&changed == &attack)
        capacitor.attack.assign(attack * secondsPerMs);
    else if (&changed == &hold)
        peakHold.holdTime.assign(hold);
    else if (&changed == &release)
        capacitor.release.assign(release * secondsPerMs);
    else if (&changed == &ceiling)
        detector.threshold.assign(ceiling);
}

void SafetyLimiter::filter(const wave::BasicBlock<float>&, wave::BasicBlock<float>& outputBlock, std::int32_t count,
                           std::uint32_t) noexcept REALTIME {
    const wave::BasicBlock<float>& reduction = capacitor.pull(count);
    if (reduction.isConstant != 0) {
        outputBlock.fillConstant(1.0f - reduction[0], count);
        return;
    }
    wave::mapBlock(
        outputBlock.data(), count, [](float gone) { return 1.0f - gone; }, reduction.data());
    outputBlock.isConstant = 0;
}
