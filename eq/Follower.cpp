#include "eq/Follower.h"

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
    const double up = rising.of(attacks[0], environment.sampleRate);
    const double down = falling.of(releases[0], environment.sampleRate);
    double level = state;
    for (std::int32_t i = 0; i < count; ++i) {
        const double step = static_cast<double>(in[i]) - level;
        level += (step > 0.0 ? up : down) * step;
        out[i] = static_cast<float>(level);
    }
    state = level;
}

void Follower::followMoving(const float* in, float* out, std::int32_t count, const float* attacks,
                            const float* releases) noexcept REALTIME {
    double level = state;
    for (std::int32_t first = 0; first < count; first += group) {
        const double up = rising.of(attacks[first], environment.sampleRate);
        const double down = falling.of(releases[first], environment.sampleRate);
        for (std::int32_t i = first; i < std::min(first + group, count); ++i) {
            const double step = static_cast<double>(in[i]) - level;
            level += (step > 0.0 ? up : down) * step;
            out[i] = static_cast<float>(level);
        }
    }
    state = level;
}
