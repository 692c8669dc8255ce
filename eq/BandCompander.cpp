#include "eq/BandCompander.h"

#include "base/FloatTolerance.h"
#include "eq/LevelLaw.h"

#include <algorithm>
#include <cmath>

namespace {

// Straight pieces: the lower half of the scale is fine.
float shapedRelease(float share) noexcept {
    constexpr float from[] = {0.0f, 0.1f, 0.25f, 0.5f, 0.7f, 0.9f, 1.0f};
    constexpr float to[] = {0.0f, 0.002f, 0.05f, 0.16f, 0.36f, 0.91f, 1.0f};
    std::size_t piece = 0;
    while (piece < 5 && share > from[piece + 1])
        ++piece;
    const float place = (share - from[piece]) / (from[piece + 1] - from[piece]);
    return to[piece] + std::clamp(place, 0.0f, 1.0f) * (to[piece + 1] - to[piece]);
}

// Divides once and asks nothing of a level, so that a loop over levels runs on several at once.
struct GainLaw {
    GainLaw(float thresholdDb, float kneeDb, float ratio, float limitDb) noexcept
        : threshold(thresholdDb)
        , half(kneeDb > floatTolerance ? 0.5f * kneeDb : -1.0f)
        , perKnee(kneeDb > floatTolerance ? 1.0f / kneeDb : 0.0f)
        , taken(ratio < BandCompander::limitingRatio ? 1.0f / ratio : 0.0f)
        , limit(limitDb) {}

    float amount(float level) const noexcept {
        const float straight = level - threshold;
        const float share = (half + straight) * perKnee;
        const float over = std::fabs(straight) <= half ? share * share * half : straight;
        return std::min(std::max(0.0f, over - over * taken), limit); // 0 too where a ratio of 0 leaves no number
    }

    float threshold;
    float half;    // of the knee; below 0: none
    float perKnee; // 1 / knee
    float taken;   // share of what is over the threshold: 1 / ratio
    float limit;
};

bool allAlike(const wave::BasicBlock<float>& block, std::int32_t count) noexcept {
    if (block.isConstant != 0)
        return true;
    const float* const samples = block.data();
    return std::all_of(samples + 1, samples + count, [first = samples[0]](float sample) { return sample == first; });
}

bool stands(const Follower& follower, float value) noexcept {
    return nearlyEqual(static_cast<float>(follower.state), value);
}

} // namespace

BandCompander::BandCompander(wave::Environment& owner)
    : Filter(owner)
    , attack(this, 25.0f)
    , highEdge(this, lowestEdge, highestEdge, highestEdge)
    , knee(owner, 0.0f, 0.0f, 72.0f)
    , lowEdge(this, lowestEdge, highestEdge, lowestEdge)
    , autoThreshold(nullptr, true)
    , range(nullptr, -18.0f)
    , ratio(owner, 100.0f, 0.0f, 100.0f)
    , release(this, 35.0f)
    , threshold(owner, 0.0f, -72.0f, 0.0f)
    , fastFollower(owner, 0.0f, 0.035f)
    , slowFollower(owner, 0.12f, 0.56f)
    , finalFollower(owner, 0.1f, 0.11f)
    , normalizer(owner) {
    setResettable(true);
    updateTimes();
}

void BandCompander::propertyChanged(AbstractProperty&) noexcept {
    updateTimes();
}

// Low and wide regions take longer.
void BandCompander::updateTimes() noexcept REALTIME {
    constexpr float automaticRamp = -1.0f;
    const float low = lowEdge;
    const float high = highEdge;
    const float percent = attack;
    const float s = shapedRelease(release * 0.01f);
    const float b = 1.0f - std::clamp(low - 4.5f, 0.0f, 10.0f) * 0.1f;
    const float d = b * b;
    const float a = ((3.6e-5f * d + 6e-5f) * percent * d + (6e-5f * d + 1e-4f) * percent) * percent;
    const float u = 100.0f / std::max(std::exp2((high + low) * 0.5f), 100.0f);
    const float w = (std::clamp(high - low, 2.0f, 8.0f) - 2.0f) * 0.16666667f; // 1 / 6

    fastFollower.release.parameter().setValue(0.02f * std::min(w + u, 1.0f) + 0.015f, automaticRamp);
    slowFollower.release.parameter().setValue(0.62375f * s + 0.50125f, automaticRamp);
    finalFollower.attack.parameter().setValue(0.01f * w + (0.59975004f * a * a + 0.00025f), automaticRamp);
    finalFollower.release.parameter().setValue(0.62375f * s * u + 0.00125f * u + 1.1227499f * s + 0.00225f,
                                               automaticRamp);
}

void BandCompander::reset() noexcept REALTIME {
    fastFollower.state = 0.0;
    slowFollower.state = 0.0;
    finalFollower.state = 0.0;
    normalizer.reset();
}

void BandCompander::filter(const wave::BasicBlock<float>& inputBlock, wave::BasicBlock<float>& outputBlock,
                           std::int32_t count, std::uint32_t) noexcept REALTIME {
    if (!environment.continues(nextPosition, count))
        reset();
    const bool flat = allAlike(inputBlock, count);
    float* const amounts = outputBlock.data();
    bool constant = flat;
    if (autoThreshold) {
        normalizer.process(inputBlock, outputBlock, count, flat);
        constant = normalizer.isSilent();
    } else if (flat) {
        std::fill_n(amounts, count, levelLaw::magnitudeToDb(inputBlock[0]));
    } else {
        levelLaw::magnitudesToDb(inputBlock.data(), amounts, count);
    }
    const bool steady = applyLaw(amounts, count);
    constant = applyEnvelope(amounts, count, constant && steady);
    outputBlock.isConstant = constant ? 1 : 0;
    if (range < 0.0f) {
        for (std::int32_t i = 0; i < count; ++i)
            amounts[i] = -amounts[i];
    }
}

bool BandCompander::applyLaw(float* inOut, std::int32_t count) noexcept REALTIME {
    const wave::BasicBlock<float>& thresholds = threshold.read(count);
    const wave::BasicBlock<float>& ratios = ratio.read(count);
    const wave::BasicBlock<float>& knees = knee.read(count);
    const bool steady = thresholds.isConstant != 0 && ratios.isConstant != 0 && knees.isConstant != 0;
    const float limit = std::fabs(range);
    if (steady) {
        const GainLaw law{thresholds[0], knees[0], ratios[0], limit};
        for (std::int32_t i = 0; i < count; ++i)
            inOut[i] = law.amount(inOut[i]);
    } else {
        for (std::int32_t i = 0; i < count; ++i)
            inOut[i] = GainLaw{thresholds[i], knees[i], ratios[i], limit}.amount(inOut[i]);
    }
    return steady;
}

// The larger of a fast and a slow envelope, smoothed once more. Followers that stand where the amount is do not run.
bool BandCompander::applyEnvelope(float* inOut, std::int32_t count, bool constant) noexcept REALTIME {
    const float amount = inOut[0];
    const bool fastStands = constant && stands(fastFollower, amount);
    const bool bothStand = fastStands && stands(slowFollower, amount);
    if (bothStand && stands(finalFollower, amount))
        return true;
    if (!bothStand) {
        if (!fastStands)
            fastFollower.follow(inOut, inOut, count);
        float* const slow = environment.scratchBlocks[0].data();
        slowFollower.follow(inOut, slow, count);
        for (std::int32_t i = 0; i < count; ++i)
            inOut[i] = std::max(inOut[i], slow[i]);
    }
    finalFollower.follow(inOut, inOut, count);
    return false;
}
