// Transforms and products of spectra as tasks.
// Threads: audio.
#pragma once

#include "base/Realtime.h"
#include "eq/GranularTask.h"
#include "wave/FFTBlock.h"

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

// block = input x kernel, or added to it.
class FFTMultiplyTask final : public FFTTask {
public:
    FFTMultiplyTask();

    bool accumulate = false;
    const FFTBlock* input = nullptr;  // not owned
    const FFTBlock* kernel = nullptr; // not owned

    void prepare() noexcept REALTIME override;
    void run(std::int32_t position, std::int32_t count) noexcept REALTIME override;
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
