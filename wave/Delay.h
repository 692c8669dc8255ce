// A delay line.
// Threads: audio, or any with the audio excluded; construction and capacity with the audio excluded.
#pragma once

#include "base/Realtime.h"
#include "wave/AlignedBuffer.h"
#include "wave/BasicBlock.h"
#include "wave/Environment.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace wave {

class AbstractDelay {
public:
    // All speak of the `count` samples written last: out[i] is what came in `delay` samples before the i-th of them.
    // What was never written is 0.
    virtual void read(std::int32_t delay, float* out, std::int32_t count) const noexcept REALTIME = 0;
    // A delay of its own for each sample, in fractions of one, linear between neighbours. In place is fine.
    virtual void readModulated(const float* delays, float* out, std::int32_t count) const noexcept REALTIME = 0;
    // Several taps of one line: outs[k] by delays[k].
    virtual void readModulatedMulti(std::span<const float* const> delays, std::span<float* const> outs,
                                    std::int32_t count) const noexcept REALTIME = 0;
    virtual ~AbstractDelay() = default;
};

class Delay final : public AbstractDelay, public DynamicMaxBlockSizeListener {
public:
    Delay(Environment& owner, std::int32_t longest); // the delay starts at the longest
    Delay(const Delay&) = delete;
    Delay& operator=(const Delay&) = delete;
    ~Delay() override;

    void
    setDelayCapacity(std::int32_t longest); // [!audio] makes memory; the content goes, the delay is kept if it fits
    void maxBlockSizeChanged() override;

    void setDelay(std::int32_t samples) noexcept REALTIME; // 0 to the capacity
    void clear() noexcept REALTIME;

    void write(const float* samples, std::int32_t count) noexcept REALTIME;
    void read(std::int32_t samples, float* out, std::int32_t count) const noexcept REALTIME override;
    void readModulated(const float* delays, float* out, std::int32_t count) const noexcept REALTIME override;
    void readModulatedMulti(std::span<const float* const> delays, std::span<float* const> outs,
                            std::int32_t count) const noexcept REALTIME override;

    std::int32_t getDelay() const noexcept REALTIME { return delay; }
    std::int32_t getCapacity() const noexcept REALTIME { return capacity; }

private:
    void makeRing();
    float sampleOfAge(std::int32_t age) const noexcept REALTIME;

    Environment& environment;
    std::int32_t capacity = 0;
    std::int32_t delay = 0;
    AlignedBuffer<float> ring; // a power of 2, for a full block behind the longest delay
    std::int32_t mask = 0;
    std::int32_t filled = 0; // samples that exist, up to the ring's size
    std::int32_t writeIndex = 0;
};

} // namespace wave
