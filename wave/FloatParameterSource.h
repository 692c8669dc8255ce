// A smoothed value as a producer, so that several can read it in one cycle.
// Threads: those of FloatParameter.
#pragma once

#include "base/Property.h"
#include "wave/FloatParameter.h"
#include "wave/Source.h"

class FloatParameterSource final : public wave::Source, public ValueAssignable<float> {
public:
    FloatParameterSource(wave::Environment& owner, float initial);
    FloatParameterSource(wave::Environment& owner, float initial, float minimum, float maximum);

    void assign(float value) noexcept REALTIME override { parameter.setValue(value, -1.0f); } // automatic ramp

    void process(wave::BasicBlock<float>& block, std::int32_t count, std::uint32_t mode) noexcept REALTIME override;

    FloatParameter parameter;
};

inline void FloatParameterSource::process(wave::BasicBlock<float>&, std::int32_t count,
                                          std::uint32_t) noexcept REALTIME {
    output = &parameter.read(count);
}
