// A meter of the graph as the last exchange brought it. What is asked of the meter travels with the next one.
// Threads: the exchange writes; one reader, the interface's.
#pragma once

#include "wave/LevelSource.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

class ExchangeStream;

class LevelSourceProxy final : public LevelSource {
public:
    // Bits of the byte that goes to the meter.
    static constexpr std::uint8_t peakReset = 1;
    static constexpr std::uint8_t holdRelease = 2;
    static constexpr std::size_t valueCount = 5; // that travel; those behind the three levels are 0
    static constexpr float nothing = -180.0f;    // dB, where there is no meter

    void clear() noexcept; // as if nothing had come yet
    void receive(ExchangeStream& stream);
    std::uint8_t takeRequests() noexcept { return requests.exchange(0, std::memory_order_relaxed); }

    static void send(LevelSource* source, ExchangeStream& stream); // null: nothing to show
    static void answer(LevelSource& source, std::uint8_t requested);

    Detection getDetection() override { return detection; }
    float level(Info info) override { return values[static_cast<std::size_t>(info)]; }
    void resetPeak() override { requests.fetch_or(peakReset, std::memory_order_relaxed); }
    void releaseHold() override { requests.fetch_or(holdRelease, std::memory_order_relaxed); }

private:
    std::array<float, valueCount> values{nothing, nothing, nothing, 0.0f, 0.0f};
    Detection detection = Detection::largest;
    std::atomic<std::uint8_t> requests{0};
};
