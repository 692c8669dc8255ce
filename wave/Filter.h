// Components with one input.
// Threads: those of wave::Producer; rewiring with the audio excluded.
#pragma once

#include "wave/Producer.h"

namespace wave {

class Consumer {
public:
    Producer* input = nullptr; // not owned; null reads as silence

protected:
    ~Consumer() = default;
};

class FilterBase : public Producer, public Consumer {
public:
    using Producer::Producer;

protected:
    const BasicBlock<float>& pullInput(std::int32_t count) noexcept REALTIME {
        return pullOrSilence(input, environment, count);
    }
};

class Filter : public FilterBase {
public:
    using FilterBase::FilterBase;

    void process(BasicBlock<float>& block, std::int32_t count, std::uint32_t mode) noexcept REALTIME override;

    // One block through the filter. One that has nothing to do does not copy: it points `output` at `inputBlock`.
    virtual void filter(const BasicBlock<float>& inputBlock, BasicBlock<float>& outputBlock, std::int32_t count,
                        std::uint32_t mode) noexcept REALTIME = 0;
};

} // namespace wave
