#include "framework/zelk/KernelSizes.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace {

constexpr std::int32_t naturalLength = 512;
constexpr std::int32_t naturalBlock = 64;
constexpr std::int32_t linearBlock = 1024; // for each multiple of 48 kHz

std::int32_t linearLength(ProcessingResolution resolution) noexcept {
    switch (resolution) {
    case ProcessingResolution::low:
        return 4096;
    case ProcessingResolution::medium:
        return 8192;
    case ProcessingResolution::high:
        return 16384;
    case ProcessingResolution::veryHigh:
        return 32768;
    case ProcessingResolution::maximum:
        break;
    }
    return 131072;
}

std::int32_t rateFactor(double sampleRate) noexcept {
    constexpr double multiplesPerHz = 2.0833333e-5; // 1 / 48000
    const auto multiples = static_cast<std::uint32_t>(std::max(std::round(sampleRate * multiplesPerHz), 1.0));
    return static_cast<std::int32_t>(std::bit_ceil(multiples));
}

} // namespace

KernelSizes kernelSizes(ProcessingMode mode, ProcessingResolution resolution, double sampleRate) noexcept REALTIME {
    switch (mode) {
    case ProcessingMode::zeroLatency:
        break;
    case ProcessingMode::naturalPhase:
        return {naturalLength, naturalBlock};
    case ProcessingMode::linearPhase:
        return {linearLength(resolution) * rateFactor(sampleRate), linearBlock * rateFactor(sampleRate)};
    }
    return {};
}

std::int32_t KernelSizes::latency(std::int32_t chainCount) const noexcept REALTIME {
    return (length / 2 + partitionBlock) * std::max(chainCount, 1);
}

std::int32_t processingLatency(ProcessingMode mode, ProcessingResolution resolution, double sampleRate,
                               std::int32_t chainCount) noexcept REALTIME {
    return kernelSizes(mode, resolution, sampleRate).latency(chainCount);
}

bool dynamicsAllowed(ProcessingMode mode, ProcessingResolution resolution) noexcept REALTIME {
    return mode != ProcessingMode::linearPhase || resolution <= ProcessingResolution::high;
}
