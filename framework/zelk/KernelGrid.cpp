#include "framework/zelk/KernelGrid.h"

#include "eq/FrequencyResponseKernel.h"

#include <numbers>

KernelGrid::KernelGrid(ProcessingMode graphMode, const KernelSizes& graphSizes, float sampleRate)
    : mode(graphMode)
    , sizes(graphSizes)
    , configuration(FrequencyResponseKernel::makeConfiguration(graphMode, sizes.length, sizes.partitionBlock,
                                                               static_cast<double>(sampleRate)))
    , mapping(false, 0.0f, sampleRate * 0.5f, sizes.length / 2)
    , frequencies(sizes.length / 2 + 1)
    , work(sizes.length / 2 + 1) {
    for (std::int32_t bin = 0; bin < bins(); ++bin)
        frequencies[bin] = static_cast<float>(2.0 * std::numbers::pi * static_cast<double>(mapping.frequency(bin)) /
                                              static_cast<double>(sampleRate));
}
