// An envelope with one time for the way up and one for the way down.
// Threads: audio, except construction (main).
#pragma once

#include "base/Realtime.h"
#include "wave/FloatParameterBus.h"

#include <cstdint>

// y += (1 - exp(-ln(10) / (t x sample rate))) (x - y): after the time t a step is done to 90 %. A time of 0 follows at
// once.
class Follower {
public:
    Follower(wave::Environment& owner, float attackSeconds, float releaseSeconds);

    FloatParameterBus attack;  // seconds, 0 to 1
    FloatParameterBus release; // seconds, 0 to 10

    void follow(const float* in, float* out, std::int32_t count) noexcept REALTIME; // in place or apart

    double state = 0.0;

private:
    class Coefficient {
    public:
        double of(float seconds, float sampleRate) noexcept REALTIME; // computed when one of the two has changed

    private:
        float knownSeconds = -1.0f;
        float knownRate = 0.0f;
        double value = 1.0;
    };

    void followMoving(const float* in, float* out, std::int32_t count, const float* attacks,
                      const float* releases) noexcept REALTIME;

    wave::Environment& environment;
    Coefficient rising;
    Coefficient falling;
};
