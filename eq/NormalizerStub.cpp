#include "eq/NormalizerStub.h"

#include "eq/LevelLaw.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float quietReference = 0.01f; // -40 dB: no signal counts as loud below it
constexpr float releaseSeconds = 10.0f;
constexpr float resyncSeconds = 0.5f;

} // namespace

NormalizerStub::NormalizerStub(wave::Environment& owner)
    : Component(owner)
    , decibels(nullptr, true)
    , primary(owner, 0.0f, releaseSeconds)
    , secondary(owner, 0.0f, releaseSeconds) {}

void NormalizerStub::process(const wave::BasicBlock<float>& input, wave::BasicBlock<float>& output, std::int32_t count,
                             bool flat) noexcept REALTIME {
    silent = flat && std::fabs(input[0]) <= quietReference && primary.state <= static_cast<double>(quietReference);
    float* const out = output.data();
    if (silent) {
        std::fill_n(out, count, levelLaw::magnitudeToDb(input[0] / quietReference));
    } else {
        float* const work = environment.scratchBlocks[0].data();
        for (std::int32_t i = 0; i < count; ++i)
            work[i] = std::fabs(input[i]);
        primary.follow(work, out, count);
        if (resyncCount > 0)
            secondary.follow(work, work, count);
        for (std::int32_t i = 0; i < count; ++i)
            out[i] = input[i] / std::max(out[i], quietReference);
        if (decibels)
            levelLaw::magnitudesToDb(out, out, count);
    }
    if (resyncCount > 0) {
        resyncCount -= count;
        if (resyncCount <= 0) {
            resyncCount = 0;
            primary.state = static_cast<double>(static_cast<float>(secondary.state));
        }
    }
}

void NormalizerStub::reset() noexcept REALTIME {
    primary.state = 0.0;
    secondary.state = 0.0;
    resyncCount = 0;
    silent = false;
}

void NormalizerStub::resynchronize() noexcept REALTIME {
    if (resyncCount != 0 || primary.state <= static_cast<double>(quietReference))
        return;
    secondary.state = 0.0;
    resyncCount = static_cast<std::int32_t>(resyncSeconds * environment.sampleRate);
}
