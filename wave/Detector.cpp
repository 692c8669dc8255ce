#include "wave/Detector.h"

#include "wave/BlockMath.h"

#include <cmath>

namespace {

float dbToGain(float db) noexcept {
    return std::exp(db * 0.115129255f); // ln(10) / 20
}

// Exactly 0 below the threshold, also for a not-a-number.
float excess(float sample, float threshold) noexcept {
    const float magnitude = std::fabs(sample);
    return 1.0f - threshold / (magnitude > threshold ? magnitude : threshold);
}

} // namespace

void Detector::filter(const wave::BasicBlock<float>& inputBlock, wave::BasicBlock<float>& outputBlock,
                      std::int32_t count, std::uint32_t) noexcept REALTIME {
    const wave::BasicBlock<float>& thresholds = threshold.read(count);
    const float* const in = inputBlock.data();
    const bool steady = thresholds.isConstant != 0;
    const float fixed = dbToGain(thresholds[0]);
    if (steady && inputBlock.isConstant != 0) {
        outputBlock.fillConstant(excess(in[0], fixed), count);
        return;
    }
    outputBlock.isConstant = 0;
    float* const out = outputBlock.data();
    if (steady)
        wave::mapBlock(
            out, count, [=](float x) { return excess(x, fixed); }, in);
    else
        wave::mapBlock(
            out, count, [](float x, float db) { return excess(x, dbToGain(db)); }, in, thresholds.data());
}
