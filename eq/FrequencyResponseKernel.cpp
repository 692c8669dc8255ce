#include "eq/FrequencyResponseKernel.h"

#include "base/ReleaseAssert.h"
#include "eq/DiscreteFrequencyResponseSource.h"

#include <algorithm>
#include <array>
#include <complex>
#include <cstddef>
#include <span>

namespace {

// Weights, measured by how even the blocks come. Longer kernels wait for memory: transform, window and slot together
// leave the second-level cache.
constexpr std::int32_t nearSize = 32768;

constexpr std::int32_t inverseWeight(std::int32_t size) noexcept {
    return size > nearSize ? 2 : 1;
}

constexpr std::int32_t storeWeight(std::int32_t size) noexcept {
    return size > nearSize ? 9 : 5;
}

const FFTPlan& kernelPlan(const Convolver::Configuration& configuration) {
    release_assert(configuration.getKernelPlan() != nullptr);
    release_assert(configuration.getKernelPlan()->getSize() == configuration.getKernelLength());
    return *configuration.getKernelPlan();
}

} // namespace

class FrequencyResponseKernel::InitSpectrumTask final : public Convolver::UpdateTask {
public:
    explicit InitSpectrumTask(FrequencyResponseKernel& owner) : kernel(owner) {
        units = kernel.inverseBlock.getPlan().getSize() / 2 + 1;
    }

    void prepare() noexcept REALTIME override { weight = kernel.evaluationWeight; }

    void run(std::int32_t position, std::int32_t count) noexcept REALTIME override {
        while (count > 0) {
            const std::int32_t share = std::min(count, chunk);
            kernel.source.responses(position, std::span(bins).first(static_cast<std::size_t>(share)));
            write(position, share);
            position += share;
            count -= share;
        }
    }

private:
    static constexpr std::int32_t chunk = 256;

    // Bin 0 and the last one are real. The place of the one's imaginary part is the real part of the other, which is
    // written later.
    void write(std::int32_t position, std::int32_t count) noexcept REALTIME {
        const std::int32_t last = units - 1;
        float* const re = kernel.inverseBlock.data() + position;
        float* const minusIm = re + last;
        const std::int32_t paired = std::min(count, last - position);
        for (std::int32_t index = 0; index < paired; ++index) {
            const std::complex<float> value = bins[static_cast<std::size_t>(index)];
            re[index] = value.real();
            minusIm[index] = -value.imag();
        }
        if (paired < count)
            kernel.inverseBlock.data()[last] = bins[static_cast<std::size_t>(paired)].real();
    }

    FrequencyResponseKernel& kernel;
    std::array<std::complex<float>, chunk> bins{};
};

class FrequencyResponseKernel::InverseFFTTask final : public Convolver::UpdateTask {
public:
    explicit InverseFFTTask(FFTBlock& wanted) : block(wanted) {
        units = block.getPlan().getTotalWork();
        weight = inverseWeight(block.getPlan().getSize());
    }

    void begin() noexcept REALTIME override { block.begin(); }
    void run(std::int32_t, std::int32_t count) noexcept REALTIME override { block.advanceInverse(count); }

private:
    FFTBlock& block;
};

class FrequencyResponseKernel::StoreResponseTask final : public Convolver::UpdateTask {
public:
    explicit StoreResponseTask(const FFTBlock& wanted) : block(wanted) {
        units = block.getPlan().getSize();
        weight = storeWeight(units);
    }

    void begin() noexcept REALTIME override { target->length = units; }

    void run(std::int32_t position, std::int32_t count) noexcept REALTIME override {
        const float scale = block.getPlan().getScale();
        const float* const window = block.getPlan().getWindow().data();
        const std::int32_t half = units / 2;
        while (count > 0) {
            const std::int32_t share = std::min(count, position < half ? half - position : units - position);
            const float* const in = block.data() + (position < half ? position + half : position - half);
            float* const out = target->samples.data() + position;
            for (std::int32_t index = 0; index < share; ++index)
                out[index] = in[index] * scale * window[position + index];
            position += share;
            count -= share;
        }
    }

private:
    const FFTBlock& block;
};

std::unique_ptr<Convolver::Configuration> FrequencyResponseKernel::makeConfiguration(ProcessingMode mode,
                                                                                     std::int32_t length,
                                                                                     std::int32_t partitionBlock,
                                                                                     double sampleRate) {
    auto configuration = std::make_unique<Convolver::Configuration>(length, partitionBlock);
    configuration->makeKernelPlan();
    if (mode == ProcessingMode::linearPhase) {
        // One hop of the top level each. A little more than the hop, which the way to samples then rounds down.
        configuration->setUpdateDivisor(configuration->getActivePartitions());
        configuration->setCrossfadeMilliseconds(999.99994 / sampleRate * (configuration->getHop() + 0.4));
    } else {
        configuration->setCrossfadeMilliseconds((length / 4 + 0.4) * 1000.0 / sampleRate);
    }
    return configuration;
}

FrequencyResponseKernel::FrequencyResponseKernel(wave::Environment& owner, const Convolver::Configuration& sizes,
                                                 DiscreteFrequencyResponseSource& wanted)
    : Kernel(owner, sizes), source(wanted), inverseBlock(kernelPlan(sizes)) {
    add(std::make_unique<InitSpectrumTask>(*this));
    add(std::make_unique<InverseFFTTask>(inverseBlock));
    add(std::make_unique<StoreResponseTask>(inverseBlock));
}

FrequencyResponseKernel::~FrequencyResponseKernel() = default;

void FrequencyResponseKernel::setEvaluationWeight(std::int32_t units) noexcept REALTIME {
    evaluationWeight = std::max(units, 1);
}
