// Where sound enters the graph: from memory outside, or from the input of another component.
// Threads: those of wave::Producer.
#pragma once

#include "wave/Producer.h"

#include <cstdint>
#include <span>

namespace wave {

// Copies from outside, block after block. Silence when the samples have run out. This is the door: a not-a-number or an
// infinity would stay in the memory of filters and followers for ever, so here it becomes 0.
class Input : public Producer {
public:
    using Producer::Producer;

    void setSamples(std::span<const float> samples) noexcept REALTIME; // [audio] not owned

    void process(BasicBlock<float>& block, std::int32_t count, std::uint32_t mode) noexcept REALTIME override;

private:
    const float* next = nullptr;
    std::int32_t remaining = 0;
};

} // namespace wave
