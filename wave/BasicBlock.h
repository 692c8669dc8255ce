// The blocks that travel between the components of the graph.
// Threads: audio; construction, destruction and resizing with the audio excluded.
#pragma once

#include "base/Realtime.h"
#include "wave/AlignedBuffer.h"

#include <cstdint>

namespace wave {

class Environment;

// Follows the block size of an environment.
class DynamicMaxBlockSizeListener {
public:
    virtual void maxBlockSizeChanged() = 0; // [main & !processing] take over environment.getMaxBlockSize()

protected:
    ~DynamicMaxBlockSizeListener() = default;
};

// One block of the environment's maximal size. T is float for audio and control, double for the memory of filters.
template <typename T>
class BasicBlock : public AlignedBuffer<T>, public DynamicMaxBlockSizeListener {
public:
    explicit BasicBlock(Environment& owner);
    BasicBlock(const BasicBlock&) = delete;
    BasicBlock& operator=(const BasicBlock&) = delete;
    virtual ~BasicBlock();

    void maxBlockSizeChanged() override;

    // Writes one value over the first `count` samples, at most the block, and marks the block constant.
    void fillConstant(T value, std::int32_t count) noexcept REALTIME;

    Environment& environment;

    // Bit 0: every sample of the valid part equals sample 0. Whoever writes a block sets or clears it.
    std::uint32_t isConstant = 0;
};

extern template class BasicBlock<float>;
extern template class BasicBlock<double>;

// Holds one value from end to end.
class ConstValueBlock : public BasicBlock<float> {
public:
    explicit ConstValueBlock(Environment& owner, float constant = 0.0f);

    void maxBlockSizeChanged() override;

    void setValue(float wanted) noexcept REALTIME;
    float getValue() const noexcept { return value; }

private:
    float value;
};

} // namespace wave
