#include "eq/Convolver.h"

#include "eq/ConvolverConfiguration.h"
#include "eq/ConvolverKernel.h"
#include "eq/ConvolverLevel.h"

Convolver::Convolver(wave::Environment& owner, Kernel& wanted)
    : Filter(owner)
    , kernel(wanted)
    , delayedBlock(owner)
    , top(std::make_unique<ConvolverLevel>(owner, wanted.getConfiguration(), &wanted, 0)) {
    kernel.connect();
    if (kernel.getConfiguration().getChild() != nullptr)
        inputDelay = std::make_unique<wave::Delay>(owner, getLatency());
}

Convolver::~Convolver() = default;

std::int32_t Convolver::getLatency() const noexcept REALTIME {
    return kernel.getConfiguration().getLatency();
}

void Convolver::filter(const wave::BasicBlock<float>& inputBlock, wave::BasicBlock<float>& outputBlock,
                       std::int32_t count, std::uint32_t) noexcept REALTIME {
    const bool streamBroke = !environment.continues(nextPosition, count);
    kernel.beginCycle(count, streamBroke);
    if (streamBroke) {
        top->reset(0);
        if (inputDelay != nullptr)
            inputDelay->clear();
    }
    if (inputDelay != nullptr) {
        inputDelay->write(inputBlock.data(), count);
        inputDelay->read(getLatency(), delayedBlock.data(), count);
    }
    top->process(inputBlock.data(), delayedBlock.data(), outputBlock.data(), count);
    outputBlock.isConstant = 0;
}
