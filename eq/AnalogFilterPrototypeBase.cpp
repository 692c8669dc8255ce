#include "eq/AnalogFilterPrototypeBase.h"

#include "base/FloatTolerance.h"

#include <cmath>

void AnalogFilterPrototypeBase::wrapPhases(float* inOut, std::size_t count) noexcept REALTIME {
    constexpr float pi = 3.1415927f;
    for (std::size_t i = 0; i < count; ++i) {
        const float x = inOut[i];
        if (nearlyEqual(std::fabs(x), pi))
            continue;
        const float half = x > 0.0f ? pi : x < 0.0f ? -pi : 0.0f;
        inOut[i] = std::fmod(x + half, 2.0f * pi) - half;
    }
}
