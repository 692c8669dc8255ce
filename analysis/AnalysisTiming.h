// How long an analysis waits for audio before it takes the stream for ended.
// Threads: any.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

// Milliseconds: three windows of `fftSize` samples at 44.1 kHz, but at least of 8192. 558 up to that size.
constexpr std::uint32_t windowTimeout(std::size_t fftSize) noexcept {
    constexpr std::size_t rate = 44100;
    const std::size_t window = (std::max<std::size_t>(fftSize, 8192) * 1000 + rate / 2) / rate;
    return static_cast<std::uint32_t>(3 * std::clamp<std::size_t>(window, 20, 500));
}
