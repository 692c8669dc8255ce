#include "eq/Convolver.h"

#include "base/FloatTolerance.h"
#include "base/ReleaseAssert.h"
#include "eq/ConvolverConfiguration.h"
#include "eq/ConvolverKernel.h"
#include "eq/ConvolverLevel.h"
#include "wave/BlockMath.h"

#include <algorithm>

Convolver::Convolver(wave::Environment& owner, Kernel& wanted)
    : Filter(owner)
    , kernel(wanted)
    , delayedBlock(owner)
    , top(std::make_unique<ConvolverLevel>(owner, wanted.getConfiguration(), &wanted, 0)) {
    kernel.connect();
    if (kernel.getConfiguration().getChild() != nullptr)
        inputDelay = std::make_unique<wave::Delay>(owner, getLatency());
    silence = ringing();
    setResettable(true); // the environment asks it for rest
}

Convolver::~Convolver() = default;

void Convolver::follow(Convolver* wanted) noexcept REALTIME {
    if (wanted == leader)
        return;
    if (wanted == nullptr) {
        kernel.takeOver(leader->kernel);
        top->follow(nullptr, kernel.nextNumber());
    } else {
        release_assert(&wanted->kernel.getConfiguration() == &kernel.getConfiguration());
        release_assert(wanted->leader == nullptr && kernel.getConfiguration().getHop() > environment.maxBlockSize);
        wanted->kernel.setDirty();
        top->follow(wanted->top.get(), wanted->kernel.nextNumber());
    }
    leader = wanted;
}

std::int32_t Convolver::getLatency() const noexcept REALTIME {
    return kernel.getConfiguration().getLatency();
}

std::int64_t Convolver::getWorkEverDone() const noexcept REALTIME {
    return top->getWorkEverDone() + kernel.getWorkEverDone();
}

std::int32_t Convolver::ringing() const noexcept REALTIME {
    return kernel.getConfiguration().getKernelLength() + getLatency();
}

bool Convolver::isAtRest() const noexcept REALTIME {
    return silence >= ringing();
}

void Convolver::filter(const wave::BasicBlock<float>& inputBlock, wave::BasicBlock<float>& outputBlock,
                       std::int32_t count, std::uint32_t) noexcept REALTIME {
    const bool streamBroke = !environment.continues(nextPosition, count);
    if (leader != nullptr)
        leader->pull(count);
    else
        kernel.beginCycle(count, streamBroke);
    if (streamBroke) {
        top->reset(0);
        if (inputDelay != nullptr)
            inputDelay->clear();
        silence = ringing();
    }
    if (inputDelay != nullptr) {
        inputDelay->write(inputBlock.data(), count);
        inputDelay->read(getLatency(), delayedBlock.data(), count);
    }
    top->process(inputBlock.data(), delayedBlock.data(), outputBlock.data(), count);
    outputBlock.isConstant = 0;
    const bool sounds = wave::extremeOf<true, true>(inputBlock.data(), count, 0.0f) > floatTolerance;
    silence = sounds ? 0 : std::min(silence + count, ringing());
}
