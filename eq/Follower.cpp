#include "eq/Follower.h"

#include "eq/FollowerKernels.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr std::int32_t group = 4; // samples that share a coefficient while a time glides

} // namespace

Follower::Follower(wave::Environment& owner, float attackSeconds, float releaseSeconds)
    : attack(owner, attackSeconds, 0.0f, 1.0f), release(owner, releaseSeconds, 0.0f, 10.0f), environment(owner) {}

double Follower::Coefficient::of(float seconds, float sampleRate) noexcept REALTIME {
    if (seconds != knownSeconds || sampleRate != knownRate) {
        knownSeconds = seconds;
        knownRate = sampleRate;
        const double samples = static_cast<double>(seconds) * static_cast<double>(sampleRate);
        value = samples > 0.0 ? -std::expm1(-2.3025851 / samples) : 1.0; // ln(10)
    }
    return value;
}

void Follower::follow(const float* in, float* out, std::int32_t count) noexcept REALTIME {
    const wave::BasicBlock<float>& attacks = attack.read(count);
    const wave::BasicBlock<float>& releases = release.read(count);
    if (attacks.isConstant == 0 || releases.isConstant == 0) {
        followMoving(in, out, count, attacks.data(), releases.data());
        return;
    }
    const FollowerSteps steps{rising.of(attacks[0], environment.sampleRate),
                              falling.of(releases[0], environment.sampleRate)};
    trustedRealtime([&] { state = followerKernel()(steps, state, in, out, count); });
}

void Follower::followMoving(const float* in, float* out, std::int32_t count, const float* attacks,
                            const float* releases) noexcept REALTIME {
    for (std::int32_t first = 0; first < count; first += group) {
        const FollowerSteps steps{rising.of(attacks[first], environment.sampleRate),
                                  falling.of(releases[first], environment.sampleRate)};
        trustedRealtime([&] {
            state = plainFollowerKernel()(steps, state, in + first, out + first, std::min(group, count - first));
        });
    }
}
