#include "eq/ConvolverConfiguration.h"

#include "base/ReleaseAssert.h"

#include <algorithm>

namespace {

// A level with this many smallest transforms in its kernel is cheaper with a larger level above it.
constexpr std::int32_t longestLevel = 32;
constexpr std::int32_t levelStep = 8;

} // namespace

Convolver::Configuration::Configuration(std::int32_t length, std::int32_t minimumBlock)
    : kernelLength(length), latency(minimumBlock) {
    release_assert(kernelLength > 0 && minimumBlock >= FFTPlan::smallestSize);
    std::int64_t size = minimumBlock;
    while (kernelLength >= longestLevel * size)
        size *= levelStep;
    plan = std::make_unique<FFTPlan>(static_cast<std::int32_t>(size));
    release_assert(plan->getSize() == size);
    hop = plan->getSize() / 2;
    if (size > minimumBlock) {
        child = std::make_unique<Configuration>(plan->getSize(), minimumBlock);
        lead = 2;
    }
    partitionCount = std::max((kernelLength + hop - 1) / hop - lead, 0);
    activePartitions = partitionCount;
}

void Convolver::Configuration::setCrossfadeMilliseconds(double milliseconds) {
    crossfadeMilliseconds = std::max(milliseconds, 0.0);
    if (child != nullptr)
        child->setCrossfadeMilliseconds(milliseconds);
}

void Convolver::Configuration::setUpdateDivisor(std::int32_t divisor) {
    updateDivisor = std::max(divisor, 1);
    if (child != nullptr)
        child->setUpdateDivisor(divisor);
}

void Convolver::Configuration::makeKernelPlan() {
    kernelPlan = std::make_unique<FFTPlan>(kernelLength); // Hann is a plan's own choice
}

void Convolver::Configuration::setActivePartitions(std::int32_t count) noexcept REALTIME {
    activePartitions = std::clamp(count, 0, partitionCount);
}

std::int32_t Convolver::Configuration::crossfadeSamples(float sampleRate) const noexcept REALTIME {
    return static_cast<std::int32_t>(crossfadeMilliseconds * 0.001 * static_cast<double>(sampleRate));
}

std::int32_t Convolver::Configuration::activePartitionsOfAllLevels() const noexcept REALTIME {
    return activePartitions + (child != nullptr ? child->activePartitionsOfAllLevels() : 0);
}

std::int32_t Convolver::Configuration::totalPartitions() const noexcept REALTIME {
    return partitionCount + (child != nullptr ? child->totalPartitions() : 0);
}
