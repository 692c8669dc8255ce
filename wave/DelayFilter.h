// A delay as a component of the graph.
// Threads: those of wave::Producer; construction and capacity with the audio excluded.
#pragma once

#include "wave/Delay.h"
#include "wave/Filter.h"

#include <cstdint>

namespace wave {

// Keeps the line fed and its stream whole; what is read from it is the business of the deriving class.
class DelayFilterBase : public Filter {
public:
    DelayFilterBase(Environment& owner, std::int32_t longest) : Filter(owner), delay(owner, longest) {}

    Delay delay;

    // Scheduled as a head, the line then takes its input at the cycle's beginning, before the rest of the graph runs,
    // and goes on being fed when nobody pulls it.
    std::uint32_t takeInputEarly = 0;

    void process(BasicBlock<float>& block, std::int32_t count, std::uint32_t mode) noexcept REALTIME override;

protected:
    // Samples by which the line lags in this cycle: 0, or `count` when it is read before it has taken its early input.
    std::int32_t getLag() const noexcept REALTIME { return lag; }

private:
    const BasicBlock<float>& takeInput(std::int32_t count) noexcept REALTIME;

    std::uint64_t nextPosition = 0;
    std::int32_t lag = 0;
};

// Its input, `delay` samples late. After a gap in the stream it begins with silence.
class DelayFilter final : public DelayFilterBase {
public:
    using DelayFilterBase::DelayFilterBase;

    void filter(const BasicBlock<float>& inputBlock, BasicBlock<float>& outputBlock, std::int32_t count,
                std::uint32_t mode) noexcept REALTIME override;
};

} // namespace wave
