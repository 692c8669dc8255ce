#include "eq/FFTTasks.h"

#include <algorithm>

namespace {

constexpr std::int32_t storeWeight = 3; // measured: the blocks it writes are in nobody's cache

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

FFTMultiplyTask::FFTMultiplyTask() : FFTTask(nearWeight) {}

void FFTMultiplyTask::add(const FFTBlock& input, const FFTBlock& kernel) noexcept REALTIME {
    const auto place = static_cast<std::size_t>(factors++);
    inputs[place] = input.data();
    kernels[place] = kernel.data();
}

void FFTMultiplyTask::prepare() noexcept REALTIME {
    units = factors * block->getPlan().getSize();
}

void FFTMultiplyTask::run(std::int32_t position, std::int32_t count) noexcept REALTIME {
    const std::int32_t from = position / factors / 2 & -FFTKernels::productGroup;
    const std::int32_t to = (position + count) / factors / 2 & -FFTKernels::productGroup;
    const FFTPlan& plan = block->getPlan();
    const FFTKernels::Product product = accumulate ? plan.getKernels().multiplyAdd : plan.getKernels().multiply;
    product(inputs.data(), kernels.data(), factors, block->data(), plan.getSize() / 2, from, to);
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
