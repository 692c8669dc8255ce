// A gain or modulation input of a component: a value of its own, until another producer is connected.
// Threads: those of FloatParameter; connecting with the audio excluded, or between cycles.
#pragma once

#include "base/Property.h"
#include "wave/FloatParameterSource.h"

#include <cstdint>

class FloatParameterBus final : public ValueAssignable<float> {
public:
    FloatParameterBus(wave::Environment& owner, float initial) : own(owner, initial) {}
    FloatParameterBus(wave::Environment& owner, float initial, float minimum, float maximum)
        : own(owner, initial, minimum, maximum) {}

    void assign(float value) noexcept REALTIME override { own.assign(value); } // of the own value, automatic ramp

    void connect(wave::Producer* producer) noexcept REALTIME { source = producer; } // not owned; null: the own value

    // The block of this cycle: any number of readers.
    const wave::BasicBlock<float>& read(std::int32_t count) noexcept REALTIME {
        if (source != nullptr)
            return source->pull(count);
        return own.parameter.isSettled(count) ? own.parameter.read(count) : own.pull(count);
    }

    FloatParameter& parameter() noexcept REALTIME { return own.parameter; }
    const FloatParameter& parameter() const noexcept REALTIME { return own.parameter; }
    wave::Producer* connected() const noexcept REALTIME { return source; }

private:
    FloatParameterSource own;
    wave::Producer* source = nullptr;
};
