#include "wave/Filter.h"

namespace wave {

void Filter::process(BasicBlock<float>& block, std::int32_t count, std::uint32_t mode) noexcept REALTIME {
    filter(pullInput(count), block, count, mode);
}

} // namespace wave
