// A spectrum that the graph makes, as the exchange brought it. What nobody has read yet keeps its peaks.
// Threads: the exchange writes; one reader, the interface's.
#pragma once

#include "wave/SpectrumSource.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

class ExchangeStream;

class SpectrumSourceProxy final : public SpectrumSource {
public:
    void receive(ExchangeStream& stream);
    static void send(SpectrumSource* source, ExchangeStream& stream); // null: none; the source is locked

    void lock() override {}
    void unlock() override { wasRead = true; }
    std::span<const float> data() const override { return magnitudes; }
    std::size_t size() const override { return magnitudes.empty() ? 0 : 2 * (magnitudes.size() - 1); }
    std::uint32_t frameCounter() const override { return frames; }

private:
    std::vector<float> magnitudes;
    std::vector<float> scratch;
    std::uint32_t frames = 0;
    bool wasRead = false;
};
