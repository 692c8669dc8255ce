#include "wave/Input.h"

#include "wave/SoundCopy.h"

#include <algorithm>

namespace wave {

void Input::setSamples(std::span<const float> samples) noexcept REALTIME {
    next = samples.data();
    remaining = static_cast<std::int32_t>(samples.size());
}

void Input::process(BasicBlock<float>& block, std::int32_t count, std::uint32_t) noexcept REALTIME {
    if (remaining <= 0) {
        output = &environment.zeroBlock;
        return;
    }
    const std::int32_t copied = std::min(count, remaining);
    copySound(next, copied, block.data());
    std::fill(block.data() + copied, block.data() + count, 0.0f);
    block.isConstant = 0;
    next += copied;
    remaining -= copied;
}

} // namespace wave
