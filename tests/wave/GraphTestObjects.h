// Small components and drivers for tests of the graph.
// Threads: those of the test.
#pragma once

#include "base/IntervalTimer.h"
#include "wave/Environment.h"
#include "wave/Producer.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

// Makes a value from the position of each sample, and records how it is driven.
class TestSource final : public wave::Producer {
public:
    using Law = std::function<float(std::uint64_t)>;

    explicit TestSource(
        wave::Environment& owner, Law wanted = [](std::uint64_t) { return 1.0f; })
        : Producer(owner), law(std::move(wanted)) {}

    bool isAtRest() const noexcept REALTIME override { return rests; }
    void reset() noexcept REALTIME override { ++resets; }
    void process(wave::BasicBlock<float>& block, std::int32_t count, std::uint32_t mode) noexcept REALTIME override;

    Law law;
    bool constant = false; // whole blocks of the value at their beginning
    bool rests = true;
    std::function<void()> whenRun;
    int runs = 0;
    int resets = 0;
    std::uint32_t lastMode = 99;
    bool continued = false; // the last block followed on the one before

private:
    std::uint64_t nextPosition = 0;
};

// One cycle in which these are pulled in this order.
void runCycle(wave::Environment& environment, std::int32_t count, const std::vector<wave::Producer*>& pulled = {});

// So many samples of a producer, in cycles of at most `piece`.
std::vector<float> render(wave::Environment& environment, wave::Producer& producer, std::size_t total,
                          std::int32_t piece);

// The same noise for the same position and seed, -1 to 1.
float noise(std::uint64_t position, std::uint32_t seed = 1);

class ManualTimer final : public IntervalTimer {
public:
    explicit ManualTimer(std::uint32_t& milliseconds) : now(milliseconds) {}
    std::uint32_t elapsed() const override { return now - start; }
    void reset() override { start = now; }

private:
    std::uint32_t& now;
    std::uint32_t start = 0;
};
