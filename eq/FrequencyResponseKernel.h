// Turns a frequency response into the kernel of a convolver, bit by bit, whenever the response has changed.
// Threads: those of Convolver::Kernel.
#pragma once

#include "base/Realtime.h"
#include "eq/ConvolverConfiguration.h"
#include "eq/ConvolverKernel.h"
#include "eq/ProcessingTypes.h"
#include "wave/FFTBlock.h"

#include <cstdint>
#include <memory>

class DiscreteFrequencyResponseSource;

// The response is read from bin 0 to bin K/2, in steps of any size and in ascending order; a source that starts anew
// for each kernel does so at bin 0. The samples are those of its inverse transform with time 0 in the middle, at K/2,
// under a Hann window. Of a real response comes a symmetric kernel, of linear phase.
class FrequencyResponseKernel final : public Convolver::Kernel {
public:
    // For kernels of `length` samples, a power of 2. Linear phase follows its source as fast as one hop of the top
    // level allows, natural phase within a quarter of its length. The caller keeps it.
    static std::unique_ptr<Convolver::Configuration> makeConfiguration(ProcessingMode mode, std::int32_t length,
                                                                       std::int32_t partitionBlock, double sampleRate);

    // The source stays where it is; its bin i is at i / length of the sample rate.
    FrequencyResponseKernel(wave::Environment& owner, const Convolver::Configuration& configuration,
                            DiscreteFrequencyResponseSource& source);
    ~FrequencyResponseKernel() override;

    // Cost of one bin of the source in units of work, about 20 for each ns; taken over at the start of each kernel.
    // Without it all bins would be read within a few samples.
    void setEvaluationWeight(std::int32_t units) noexcept REALTIME;

private:
    class InitSpectrumTask;
    class InverseFFTTask;
    class StoreResponseTask;

    DiscreteFrequencyResponseSource& source;
    FFTBlock inverseBlock;
    std::int32_t evaluationWeight = 100;
};
