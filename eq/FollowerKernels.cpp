#include "eq/FollowerKernels.h"

namespace {

double followPlain(const FollowerSteps& steps, double level, const float* in, float* out, std::int32_t count) noexcept {
    for (std::int32_t i = 0; i < count; ++i) {
        const double distance = static_cast<double>(in[i]) - level;
        level += (distance > 0.0 ? steps.rise : steps.fall) * distance;
        out[i] = static_cast<float>(level);
    }
    return level;
}

const FollowerKernel chosen = wideFollowerKernel() != nullptr ? wideFollowerKernel() : followPlain;

} // namespace

FollowerKernel plainFollowerKernel() noexcept REALTIME {
    return followPlain;
}

FollowerKernel followerKernel() noexcept REALTIME {
    return chosen;
}
