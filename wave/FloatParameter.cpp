#include "wave/FloatParameter.h"

#include "base/FloatTolerance.h"

#include <algorithm>
#include <cmath>

namespace {

float fraction(float value) noexcept {
    return value - std::floor(value);
}

// Turns from one place to another, the short way: -0.5 to 0.5.
float shortWay(float turns) noexcept {
    return turns > 0.5f ? turns - 1.0f : turns < -0.5f ? turns + 1.0f : turns;
}

// The less of the range a change covers, the longer it takes: a square law between the two lengths.
float automaticRamp(float share, float shortest, float longest) noexcept {
    const float rest = std::max(0.3f - share, 0.0f);
    return (longest - shortest) * rest * rest * 11.111111f + shortest; // 1 / 0.3^2
}

std::int32_t wholeSamples(float milliseconds, float sampleRate) noexcept {
    constexpr double longest = 2147483647.0; // the largest int32_t
    const double samples = static_cast<double>(milliseconds) * static_cast<double>(sampleRate) * 0.001;
    return samples >= 1.0 ? static_cast<std::int32_t>(std::min(samples, longest)) : 0;
}

} // namespace

FloatParameter::FloatParameter(wave::Environment& owner, float initial)
    : period(nullptr, 0.0f)
    , maximumRamp(nullptr, 150.0f)
    , minimumRamp(nullptr, 20.0f)
    , environment(owner)
    , start(initial)
    , maximum(std::max(1.0f, initial))
    , range(maximum)
    , target(initial)
    , block(owner, *this) {}

void FloatParameter::setRange(float lowest, float highest) noexcept REALTIME {
    minimum = lowest;
    maximum = highest;
    range = highest - lowest;
    const float inside = limited(target);
    if (nearlyEqual(inside, target))
        return;
    target = inside;
    rampPosition = rampLength = 0;
    filled = 0;
}

void FloatParameter::setValue(float value, float milliseconds) noexcept REALTIME {
    value = limited(value);
    if (!(std::fabs(value - target) > floatTolerance)) // so put, a not-a-number stops here
        return;
    const bool stale = !inStep();
    lastSetPosition = environment.position;
    start = !stale && rampPosition < rampLength ? static_cast<float>(reached()) : target;
    rampPosition = 0;
    filled = 0;
    if (period > 0.0f)
        start = limited(value - shortWay(fraction(value / period) - fraction(start / period)) * period);

    const float change = value - start;
    if (milliseconds < 0.0f) {
        const float share = range > 0.0f ? std::fabs(change) / range : 1.0f;
        milliseconds = stale ? 0.0f : automaticRamp(share, minimumRamp, maximumRamp);
    }
    rampLength = wholeSamples(milliseconds, environment.sampleRate);
    step = rampLength > 0 ? change / static_cast<float>(rampLength) : 0.0f;
    target = value;
}

float FloatParameter::limited(float value) const noexcept REALTIME {
    return std::max(std::min(value, maximum), minimum);
}

double FloatParameter::reached() const noexcept REALTIME {
    return static_cast<double>(rampPosition) * static_cast<double>(step) + static_cast<double>(start);
}

void FloatParameter::restartRamp(float value, float milliseconds) noexcept REALTIME {
    jumpToTarget();
    setValue(value, milliseconds);
    restarted = true;
}

// The value was set or read up to this very cycle, in a stream that has not been reset since.
bool FloatParameter::inStep() const noexcept REALTIME {
    return lastSetPosition == environment.position &&
           (restarted || lastSetPosition > environment.lastResetPosition);
}

const wave::BasicBlock<float>& FloatParameter::readMoving(std::int32_t count) noexcept REALTIME {
    const std::uint64_t position = environment.position;
    if (!inStep()) {
        const std::int32_t left = rampLength - rampPosition;
        if (lastSetPosition <= environment.lastResetPosition)
            rampPosition = rampLength;
        else if (lastSetPosition < position) // time passed unread
            rampPosition +=
                static_cast<std::int32_t>(std::min(position - lastSetPosition, static_cast<std::uint64_t>(left)));
    }
    lastSetPosition = position + static_cast<std::uint64_t>(count);
    restarted = false;

    float* const values = block.data();
    if (rampPosition >= rampLength) {
        std::fill(values + filled, values + count, target);
        filled = count;
        block.isConstant = 1;
        return block;
    }
    const std::int32_t moving = std::min(rampLength - rampPosition, count);
    const double first = reached();
    const double slope = static_cast<double>(step);
    for (std::int32_t index = 0; index < moving; ++index)
        values[index] = static_cast<float>(first + static_cast<double>(index) * slope);
    std::fill(values + moving, values + count, target);
    rampPosition += moving;
    block.isConstant = 0;
    return block;
}
