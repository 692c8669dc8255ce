// Transforms and products of spectra as tasks.
// Threads: audio.
#pragma once

#include "base/Realtime.h"
#include "eq/GranularTask.h"
#include "wave/FFTBlock.h"

#include <array>
#include <cstdint>

class FFTTask : public GranularTask {
public:
    using GranularTask::GranularTask;

    FFTBlock* block = nullptr; // not owned; what the task works on
};

class FFTCalculateTask : public FFTTask {
public:
    void prepare() noexcept REALTIME override;
    void begin() noexcept REALTIME override;
    void run(std::int32_t position, std::int32_t count) noexcept REALTIME override;
};

class FFTCalculateInverseTask final : public FFTCalculateTask {
public:
    void run(std::int32_t position, std::int32_t count) noexcept REALTIME override;
};

// The sum of inputs x kernels into the block, or added to it. Several at a time, because each sum that is written and
// read again costs as much as a product.
class FFTMultiplyTask final : public FFTTask {
public:
    static constexpr std::int32_t mostFactors = 8;

    // Weights, measured: spectra that stay in the second-level cache from hop to hop, and those that do not.
    static constexpr std::int32_t nearWeight = 2;
    static constexpr std::int32_t farWeight = 4;

    FFTMultiplyTask();

    void clear() noexcept REALTIME { factors = 0; }
    void add(const FFTBlock& input, const FFTBlock& kernel) noexcept REALTIME; // at most mostFactors of them

    bool accumulate = false;

    void prepare() noexcept REALTIME override;
    void run(std::int32_t position, std::int32_t count) noexcept REALTIME override;

private:
    std::array<const float*, mostFactors> inputs{};
    std::array<const float*, mostFactors> kernels{};
    std::int32_t factors = 0;
};

// Samples into a block, zeros behind them.
class FFTStoreInputTask : public FFTTask {
public:
    FFTStoreInputTask();

    void prepare() noexcept REALTIME override;
    void run(std::int32_t position, std::int32_t count) noexcept REALTIME override;

protected:
    const float* source = nullptr; // not owned
    std::int32_t available = 0;    // samples there, at most the block
};
