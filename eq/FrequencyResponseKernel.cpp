#include "eq/FrequencyResponseKernel.h"

#include "base/ReleaseAssert.h"
#include "eq/DiscreteFrequencyResponseSource.h"

#include <algorithm>
#include <array>
#include <complex>
#include <cstddef>
#include <span>

namespace {

constexpr std::int32_t storeWeight = 5; // measured: from one array and a window into memory that is in nobody's cache

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

    // Bin 0 and the last one are real.
    void write(std::int32_t position, std::int32_t count) noexcept REALTIME {
        const std::int32_t last = units - 1;
        float* const spectrum = kernel.inverseBlock.data();
        for (std::int32_t index = 0; index < count; ++index) {
            const std::int32_t bin = position + index;
            const std::complex<float> value = bins[static_cast<std::size_t>(index)];
            spectrum[bin] = value.real();
            if (bin > 0 && bin < last)
                spectrum[last + bin] = -value.imag();
        }
    }

    FrequencyResponseKernel& kernel;
    std::array<std::complex<float>, chunk> bins{};
};

class FrequencyResponseKernel::InverseFFTTask final : public Convolver::UpdateTask {
public:
    explicit InverseFFTTask(FFTBlock& wanted) : block(wanted) { units = block.getPlan().getTotalWork(); }

    void begin() noexcept REALTIME override { block.begin(); }
    void run(std::int32_t, std::int32_t count) noexcept REALTIME override { block.advanceInverse(count); }

private:
    FFTBlock& block;
};

class FrequencyResponseKernel::StoreResponseTask final : public Convolver::UpdateTask {
public:
    explicit StoreResponseTask(const FFTBlock& wanted) : UpdateTask(storeWeight), block(wanted) {
        units = block.getPlan().getSize();
    }

    void begin() noexcept REALTIME override { target->length = units; }

    void run(std::int32_t position, std::int32_t count) noexcept REALTIME override {
        const float* const window = block.getPlan().getWindow().data();
        const std::int32_t half = units / 2;
        while (count > 0) {
            const std::int32_t share = std::min(count, position < half ? half - position : units - position);
            float* const out = target->samples.data() + position;
            block.readScaled(position < half ? position + half : position - half, out, share);
            for (std::int32_t index = 0; index < share; ++index)
                out[index] *= window[position + index];
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
