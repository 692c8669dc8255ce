#include "eq/FFTTasks.h"

#include <algorithm>

namespace {

// Measured beside a unit of a transform, with spectra that come from the second-level cache.
constexpr std::int32_t multiplyWeight = 3;
constexpr std::int32_t storeWeight = 3;

constexpr std::int32_t binGroup = 8; // what the products work on at a time

} // namespace

void FFTCalculateTask::prepare() noexcept REALTIME {
    units = block->getPlan().getTotalWork();
}

void FFTCalculateTask::begin() noexcept REALTIME {
    block->begin();
}

void FFTCalculateTask::run(std::int32_t, std::int32_t count) noexcept REALTIME {
    block->advance(count);
}

void FFTCalculateInverseTask::run(std::int32_t, std::int32_t count) noexcept REALTIME {
    block->advanceInverse(count);
}

FFTMultiplyTask::FFTMultiplyTask() : FFTTask(multiplyWeight) {}

void FFTMultiplyTask::prepare() noexcept REALTIME {
    units = block->getPlan().getSize();
}

void FFTMultiplyTask::run(std::int32_t position, std::int32_t count) noexcept REALTIME {
    const std::int32_t from = position / 2 & -binGroup;
    const std::int32_t to = (position + count) / 2 & -binGroup;
    const FFTPlan& plan = block->getPlan();
    const FFTKernels& kernels = plan.getKernels();
    const FFTKernels::Product product = accumulate ? kernels.multiplyAdd : kernels.multiply;
    product(input->data(), kernel->data(), block->data(), plan.getSize() / 2, from, to);
}

FFTStoreInputTask::FFTStoreInputTask() : FFTTask(storeWeight) {}

void FFTStoreInputTask::prepare() noexcept REALTIME {
    units = block->getPlan().getSize();
}

void FFTStoreInputTask::run(std::int32_t position, std::int32_t count) noexcept REALTIME {
    const std::int32_t copied = std::clamp(available - position, 0, count);
    float* const to = block->data() + position;
    if (copied > 0)
        std::copy_n(source + position, copied, to);
    std::fill_n(to + copied, count - copied, 0.0f);
}
