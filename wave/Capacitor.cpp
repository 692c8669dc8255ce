#include "wave/Capacitor.h"

#include <algorithm>
#include <cmath>

double Capacitor::coefficient(float seconds) const noexcept REALTIME {
    constexpr double toNinetyPercent = -2.3025851; // ln(0.1)
    constexpr double shortest =
        0.0261658; // samples: the coefficient is 1 within double precision, and no time divides by 0
    const double samples = static_cast<double>(seconds) * static_cast<double>(environment.sampleRate);
    return 1.0 - std::exp(toNinetyPercent / std::max(samples, shortest));
}

void Capacitor::filter(const wave::BasicBlock<float>& inputBlock, wave::BasicBlock<float>& outputBlock,
                       std::int32_t count, std::uint32_t) noexcept REALTIME {
    if (!environment.continues(nextPosition, count))
        reset();
    const wave::BasicBlock<float>& attacks = attack.read(count);
    const wave::BasicBlock<float>& releases = release.read(count);
    if (inputBlock.isConstant != 0 && static_cast<double>(inputBlock[0]) == state) { // settled
        outputBlock.fillConstant(inputBlock[0], count);
        return;
    }
    outputBlock.isConstant = 0;
    const bool steady = attacks.isConstant != 0 && releases.isConstant != 0;
    double up = coefficient(attacks[0]);
    double down = coefficient(releases[0]);
    for (std::int32_t index = 0; index < count; ++index) {
        if (!steady) {
            up = coefficient(attacks[index]);
            down = coefficient(releases[index]);
        }
        const double distance = static_cast<double>(inputBlock[index]) - state;
        state += (distance > 0.0 ? up : down) * distance;
        outputBlock[index] = static_cast<float>(state);
    }
    // Arrival, which an exponential never reaches by itself. The step is far below what a float gain can tell.
    if (inputBlock.isConstant != 0 && std::fabs(static_cast<double>(inputBlock[0]) - state) < 1e-9)
        state = static_cast<double>(inputBlock[0]);
}
