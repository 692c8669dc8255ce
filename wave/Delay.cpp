#include "wave/Delay.h"

#include <algorithm>
#include <bit>

namespace wave {

Delay::Delay(Environment& owner, std::int32_t longest) : environment(owner) {
    setDelayCapacity(longest);
    delay = capacity;
    environment.addMaxBlockSizeListener(*this);
}

Delay::~Delay() {
    environment.removeMaxBlockSizeListener(*this);
}

void Delay::setDelayCapacity(std::int32_t longest) {
    constexpr std::int32_t limit = 1 << 29; // keeps the ring's size, a power of 2 with a block on top, an int32_t
    capacity = std::clamp(longest, 0, limit);
    delay = std::min(delay, capacity);
    makeRing();
}

void Delay::maxBlockSizeChanged() {
    makeRing();
}

void Delay::makeRing() {
    const auto needed = static_cast<std::uint32_t>(capacity + environment.getMaxBlockSize());
    const auto size = static_cast<std::int32_t>(std::bit_ceil(needed));
    ring.resize(size);
    mask = size - 1;
    clear();
}

void Delay::setDelay(std::int32_t samples) noexcept REALTIME {
    delay = std::clamp(samples, 0, capacity);
}

void Delay::clear() noexcept REALTIME {
    filled = 0;
    writeIndex = 0;
}

void Delay::write(const float* samples, std::int32_t count) noexcept REALTIME {
    const std::int32_t straight = std::min(count, mask + 1 - writeIndex);
    std::copy_n(samples, straight, ring.data() + writeIndex);
    std::copy_n(samples + straight, count - straight, ring.data());
    writeIndex = (writeIndex + count) & mask;
    filled = std::min(filled + count, mask + 1);
}

void Delay::read(std::int32_t samples, float* out, std::int32_t count) const noexcept REALTIME {
    samples = std::clamp(samples, 0, mask + 1); // all beyond is missing alike
    const std::int32_t missing = std::clamp(samples + count - filled, 0, count);
    std::fill_n(out, missing, 0.0f);
    out += missing;
    count -= missing;
    const std::int32_t from = (writeIndex - samples - count) & mask;
    const std::int32_t straight = std::min(count, mask + 1 - from);
    std::copy_n(ring.data() + from, straight, out);
    std::copy_n(ring.data(), count - straight, out + straight);
}

void Delay::readModulated(const float* delays, float* out, std::int32_t count) const noexcept REALTIME {
    const auto longest = static_cast<float>(mask + 1);
    for (std::int32_t index = 0; index < count; ++index) {
        const float wanted = std::min(std::max(0.0f, delays[index]), longest); // so put, a not-a-number reads as 0
        const auto whole = static_cast<std::int32_t>(wanted);
        const std::int32_t age = whole + count - index;
        const float newer = sampleOfAge(age);
        const float older = sampleOfAge(age + 1);
        out[index] = newer + (wanted - static_cast<float>(whole)) * (older - newer);
    }
}

void Delay::readModulatedMulti(std::span<const float* const> delays, std::span<float* const> outs,
                               std::int32_t count) const noexcept REALTIME {
    const std::size_t taps = std::min(delays.size(), outs.size());
    for (std::size_t tap = 0; tap < taps; ++tap)
        readModulated(delays[tap], outs[tap], count);
}

// Age 1 is the sample written last.
float Delay::sampleOfAge(std::int32_t age) const noexcept REALTIME {
    return age <= filled ? ring[(writeIndex - age) & mask] : 0.0f;
}

} // namespace wave
