// A smoothed value whose course over a cycle appears as a block.
// Threads: audio, or any with the audio excluded.
#pragma once

#include "base/Property.h"
#include "base/Realtime.h"
#include "wave/BasicBlock.h"
#include "wave/Environment.h"

#include <cstdint>

// Values are set between cycles and read once in each. A small change glides slowly, a large one gets over quickly;
// after a reset, or when nobody has read the last cycle, a change is a jump.
class FloatParameter {
public:
    FloatParameter(wave::Environment& owner, float initial);
    FloatParameter(const FloatParameter&) = delete;
    FloatParameter& operator=(const FloatParameter&) = delete;

    Property<float> period;      // above 0: values wrap here, and a change goes the short way round
    Property<float> maximumRamp; // ms, of the smallest change
    Property<float> minimumRamp; // ms, of a change of 30 % of the range or more

    // A target outside is clamped and its ramp ends.
    void setRange(float lowest, float highest) noexcept REALTIME;

    // A ramp of this length from the value reached so far. Below 0: the length follows from the size of the change.
    // A not-a-number changes nothing.
    void setValue(float value, float milliseconds) noexcept REALTIME;

    // From the target so far, and also where the stream was reset at this very sample.
    void restartRamp(float value, float milliseconds) noexcept REALTIME;

    void jumpToTarget() noexcept REALTIME { rampPosition = rampLength; }

    // The values of this cycle, once a cycle. Whoever may meet another reader uses a FloatParameterSource.
    const wave::BasicBlock<float>& read(std::int32_t count) noexcept REALTIME;

    // The block of the next `count` samples stands already, all target: reading it again changes nothing.
    bool isSettled(std::int32_t count) const noexcept REALTIME { return count <= filled; }

    float getTarget() const noexcept REALTIME { return target; }
    float getMinimum() const noexcept REALTIME { return minimum; }
    float getMaximum() const noexcept REALTIME { return maximum; }

private:
    friend class FloatParameterSource;

    class ValueBlock final : public wave::ConstValueBlock {
    public:
        ValueBlock(wave::Environment& owner, FloatParameter& filledParameter)
            : ConstValueBlock(owner, filledParameter.target), parameter(filledParameter) {}
        void maxBlockSizeChanged() override {
            ConstValueBlock::maxBlockSizeChanged();
            parameter.filled = 0;
        }

    private:
        FloatParameter& parameter;
    };

    float limited(float value) const noexcept REALTIME;
    double reached() const noexcept REALTIME;
    bool inStep() const noexcept REALTIME;
    const wave::BasicBlock<float>& readMoving(std::int32_t count) noexcept REALTIME;

    wave::Environment& environment;
    std::int32_t rampPosition = 0; // samples done
    std::int32_t rampLength = 0;   // samples in total
    float start;                   // value at the ramp's beginning
    float step = 0.0f;             // change per sample
    float minimum = 0.0f;
    float maximum;
    float range;
    float target;
    std::uint64_t lastSetPosition = 0; // of the last setValue, or where the last read ended
    bool restarted = false;            // by restartRamp, and not read since
    std::int32_t filled = 0;           // samples of the block that hold the target; above 0 only at rest
    ValueBlock block;
};

// At rest the block holds what it held: one comparison.
inline const wave::BasicBlock<float>& FloatParameter::read(std::int32_t count) noexcept REALTIME {
    if (count > filled)
        return readMoving(count);
    lastSetPosition = environment.position + static_cast<std::uint64_t>(count);
    return block;
}
