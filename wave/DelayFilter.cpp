#include "wave/DelayFilter.h"

namespace wave {

void DelayFilterBase::process(BasicBlock<float>& block, std::int32_t count, std::uint32_t mode) noexcept REALTIME {
    const bool early = (mode & modeHead) != 0 && takeInputEarly != 0;
    if (hasRun()) { // a head is called again after another head has pulled it
        if (early)
            takeInput(count);
        return;
    }
    if (!environment.continues(nextPosition, count))
        delay.clear();
    const bool fed = early || takeInputEarly == 0;
    lag = fed ? 0 : count;
    filter(fed ? takeInput(count) : environment.zeroBlock, block, count, mode);
}

const BasicBlock<float>& DelayFilterBase::takeInput(std::int32_t count) noexcept REALTIME {
    const BasicBlock<float>& taken = pullInput(count);
    delay.write(taken.data(), count);
    return taken;
}

void DelayFilter::filter(const BasicBlock<float>&, BasicBlock<float>& outputBlock, std::int32_t count,
                         std::uint32_t) noexcept REALTIME {
    delay.read(delay.getDelay() - getLag(), outputBlock.data(), count);
    outputBlock.isConstant = 0;
}

} // namespace wave
