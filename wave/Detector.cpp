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
    const float* const limits = thresholds.data();
    const bool steady = thresholds.isConstant != 0;
    const float fixed = dbToGain(limits[0]);
    if (steady && inputBlock.isConstant != 0) {
        outputBlock.fillConstant(excess(in[0], fixed), count);
        return;
    }
    outputBlock.isConstant = 0;
    if (steady)
        wave::fillBlock(outputBlock.data(), count, [=](std::int32_t i) { return excess(in[i], fixed); });
    else
        wave::fillBlock(outputBlock.data(), count, [=](std::int32_t i) { return excess(in[i], dbToGain(limits[i])); });
}
