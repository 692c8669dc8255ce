// What it costs the audio thread that somebody looks: the equalizer with all its bands, with the interface closed and
// with one that exchanges, in turns, so that both meet the same machine. Reported is the added share.

#include "framework/ExchangeStream.h"
#include "framework/zelk/ZelkProcessor.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <vector>

namespace {

constexpr std::size_t blockSamples = 256;
constexpr int blocksOfTurn = 30; // fewer than the pool has groups

class Equalizer {
public:
    Equalizer(bool sideChain, FilterSlope slope) {
        processor.setSampleRate(48000.0);
        processor.setSideChainConnected(sideChain);
        for (std::int32_t index = 0; index < bandCount; ++index) {
            EQParameterSet& band = processor.bands.set(index);
            band.used.setValue(1.0f, GenericParameterOwner::silent);
            band.frequency.setValue(5.0f + 0.38f * static_cast<float>(index), GenericParameterOwner::silent);
            band.slope.setValue(static_cast<float>(band.slope.indexFromTyped(slope)), GenericParameterOwner::silent);
            band.gain.setValue(index % 2 == 0 ? 3.0f : -3.0f, GenericParameterOwner::silent);
        }
        std::uint32_t state = 1;
        for (std::vector<float>& channel : sound)
            for (float& sample : channel) {
                state = state * 1664525u + 1013904223u;
                sample = static_cast<float>(static_cast<std::int32_t>(state)) * 0x1p-33f;
            }
        run(400); // past all ramps
    }

    void run(int blocks) {
        const float* const inputs[] = {sound[0].data(), sound[1].data(), sound[2].data(), sound[3].data()};
        float* const outputs[] = {sound[4].data(), sound[5].data()};
        for (; blocks > 0; --blocks) {
            std::uint32_t flags = 0;
            processor.process({inputs, outputs}, blockSamples, flags);
        }
    }

    double timed(int blocks) {
        const auto start = std::chrono::steady_clock::now();
        run(blocks);
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    }

    void exchange() {
        stream.clear();
        processor.writeSources(stream);
    }

private:
    ZelkProcessor processor{chl::Layout::stereo};
    std::vector<std::vector<float>> sound{6, std::vector<float>(blockSamples)};
    ExchangeStream stream;
};

double median(std::vector<double>& values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// The arguments: a side chain is connected; the sections of each band.
void interfaceOpen(benchmark::State& state) {
    Equalizer equalizer(state.range(0) != 0, state.range(1) == 1 ? FilterSlope::db12 : FilterSlope::db24);
    std::vector<double> open;
    std::vector<double> closed;
    for (auto _ : state) {
        equalizer.run(60); // nobody looks: the pool runs out
        closed.push_back(equalizer.timed(blocksOfTurn));
        equalizer.exchange();
        equalizer.run(3); // the exchange runs on another core in life, and leaves this one's caches alone
        open.push_back(equalizer.timed(blocksOfTurn));
        state.SetIterationTime(open.back());
    }
    const double with = median(open);
    const double without = median(closed);
    state.counters["closed_ns_per_sample"] = 1e9 * without / (blocksOfTurn * static_cast<double>(blockSamples));
    state.counters["added_percent"] = 100.0 * (with - without) / without;
}
BENCHMARK(interfaceOpen)
    ->ArgsProduct({{0, 1}, {1, 2}})
    ->ArgNames({"sidechain", "sections"})
    ->UseManualTime()
    ->Iterations(1000);

// The main thread's part: what one exchange takes after 5 ms and after a long frame of a display.
void exchange(benchmark::State& state) {
    Equalizer equalizer(true, FilterSlope::db12);
    for (auto _ : state) {
        state.PauseTiming();
        equalizer.run(static_cast<int>(state.range(0)));
        state.ResumeTiming();
        equalizer.exchange();
    }
}
BENCHMARK(exchange)->Arg(1)->Arg(8)->ArgName("blocks");

} // namespace
