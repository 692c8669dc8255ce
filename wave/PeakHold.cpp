#include "wave/PeakHold.h"

#include <algorithm>
#include <bit>
#include <cmath>

PeakHold::PeakHold(wave::Environment& owner) : Filter(owner), holdTime(owner, 50.0f, 0.0f, longestHoldMs) {
    makeQueue();
    environment.sampleRateChanged.add(this, &PeakHold::makeQueue);
}

PeakHold::~PeakHold() {
    environment.sampleRateChanged.remove(this, &PeakHold::makeQueue);
}

void PeakHold::makeQueue() {
    const double longest = static_cast<double>(longestHoldMs) * static_cast<double>(environment.sampleRate) * 0.001;
    const std::uint32_t size = std::bit_ceil(static_cast<std::uint32_t>(std::ceil(longest)) + 1);
    queue.assign(size, Value{});
    mask = size - 1;
    reset();
}

void PeakHold::reset() noexcept REALTIME {
    front = back = now = 0;
}

std::uint32_t PeakHold::windowSamples(float milliseconds) const noexcept REALTIME {
    const double samples = static_cast<double>(milliseconds) * static_cast<double>(environment.sampleRate) * 0.001;
    const double longest = static_cast<double>(mask) + 1.0;
    return static_cast<std::uint32_t>(std::min(std::max(1.0, samples), longest)); // so put, a not-a-number reads as 1
}

float PeakHold::pushed(float value, std::uint32_t window) noexcept REALTIME {
    while (front != back && now - queue[front & mask].position >= window)
        ++front;
    while (front != back && !(queue[(back - 1) & mask].value > value))
        --back;
    queue[back & mask] = {value, now};
    ++back;
    ++now;
    return queue[front & mask].value;
}

void PeakHold::filter(const wave::BasicBlock<float>& inputBlock, wave::BasicBlock<float>& outputBlock,
                      std::int32_t count, std::uint32_t) noexcept REALTIME {
    if (!environment.continues(nextPosition, count))
        reset();
    const wave::BasicBlock<float>& holdTimes = holdTime.read(count);
    std::uint32_t window = windowSamples(holdTimes[0]);
    const bool steady = holdTimes.isConstant != 0;
    if (inputBlock.isConstant != 0 && (front == back || !(queue[front & mask].value > inputBlock[0]))) {
        // Nothing larger is in the window: one value stands for the whole block and puts out all before it.
        outputBlock.fillConstant(pushed(inputBlock[0], window), count);
        return;
    }
    outputBlock.isConstant = 0;
    for (std::int32_t index = 0; index < count; ++index) {
        if (!steady)
            window = windowSamples(holdTimes[index]);
        outputBlock[index] = pushed(inputBlock[index], window);
    }
}
