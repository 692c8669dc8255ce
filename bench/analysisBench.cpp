// What the analysis costs. On the audio thread: the buffer at rest, which is what every block pays while nobody looks,
// and while it copies. On the interface's thread: a look of the analyzer and of the presenter.

#include "analysis/EQMatchEngine.h"
#include "analysis/RealTimeAudioBuffer.h"
#include "analysis/RealTimeFrequencyAnalyzer.h"
#include "analysis/SpectrumPresenter.h"
#include "platform/Clock.h"
#include "tests/support/MatchTargets.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>

namespace {

constexpr std::int32_t blockSamples = 256;

// A stereo graph whose sources cost nothing.
struct Graph {
    struct Noise final : wave::Producer {
        explicit Noise(wave::Environment& owner) : Producer(owner) {
            std::uint32_t state = 1;
            for (std::int32_t i = 0; i < blockSamples; ++i) {
                state = state * 1664525u + 1013904223u;
                (*ownBlock)[i] = static_cast<float>(static_cast<std::int32_t>(state)) * 0x1p-31f;
            }
        }
        void process(wave::BasicBlock<float>&, std::int32_t, std::uint32_t) noexcept REALTIME override {}
    };

    Graph() {
        buffer.setUp();
        for (std::size_t index = 0; index < RealTimeAudioBuffer::measurementCount; ++index)
            for (std::size_t channel = 0; channel < 2; ++channel)
                buffer.measurement(index).setInput(channel, &noise);
    }

    void run() {
        environment.beginCycle();
        environment.runCycle(blockSamples, false);
    }

    wave::Environment environment;
    Noise noise{environment};
    RealTimeAudioBuffer buffer{environment, 2};
};

void perSample(benchmark::State& state, double samples) {
    state.counters["per_sample"] = benchmark::Counter(samples * static_cast<double>(state.iterations()),
                                                      benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void bufferWithoutReader(benchmark::State& state) {
    Graph graph;
    for (int block = 0; block < 100; ++block)
        graph.run();
    for (auto _ : state)
        graph.run();
    perSample(state, blockSamples);
}
BENCHMARK(bufferWithoutReader);

// The pool is filled almost to its end, so that all its memory is in use; the reader's part is not counted.
void bufferWithReader(benchmark::State& state) {
    constexpr int blocks = static_cast<int>(RealTimeAudioBuffer::baseGroupCount) - 2;
    Graph graph;
    for (auto _ : state) {
        for (int block = 0; block < blocks; ++block)
            graph.run();
        state.PauseTiming();
        { const LockedSource::Lock held(graph.buffer.measurement(0)); }
        state.ResumeTiming();
    }
    perSample(state, static_cast<double>(blocks) * blockSamples);
}
BENCHMARK(bufferWithReader);

// Three stereo sources, one window a look, and the picture of 1000 columns of one of them.
void lookAtSpectrum(benchmark::State& state) {
    Graph graph;
    RealTimeFrequencyAnalyzer analyzer(mainAnalyzer, createIntervalTimer());
    analyzer.fftSize = static_cast<std::int32_t>(state.range(0));
    for (std::size_t index = 0; index < 3; ++index)
        analyzer.measurement(index).connect(&graph.buffer.measurement(index));
    SpectrumPresenter presenter(createIntervalTimer());
    presenter.columnCount = 1000;
    presenter.setSource(&analyzer.measurement(0));
    const std::int64_t blocks = state.range(0) / 4 / blockSamples;
    for (auto _ : state) {
        for (std::int64_t block = 0; block < blocks; ++block)
            graph.run();
        presenter.update(16.0);
        benchmark::DoNotOptimize(presenter.columns().data());
    }
    perSample(state, static_cast<double>(blocks * blockSamples));
}
BENCHMARK(lookAtSpectrum)->Arg(1024)->Arg(2048)->Arg(4096)->Arg(8192)->Unit(benchmark::kMicrosecond);

void presentWithoutNewSpectrum(benchmark::State& state) {
    Graph graph;
    RealTimeFrequencyAnalyzer analyzer(externalAnalyzer, createIntervalTimer());
    analyzer.measurement(0).connect(&graph.buffer.measurement(0));
    SpectrumPresenter presenter(createIntervalTimer());
    presenter.columnCount = 1000;
    presenter.setSource(&analyzer.measurement(0));
    for (auto _ : state)
        presenter.update(16.0);
}
BENCHMARK(presentWithoutNewSpectrum)->Unit(benchmark::kMicrosecond);

// By rounds, on a curve that needs all 24 bands.
void matchCurve(benchmark::State& state) {
    const std::vector<float> curve = match::smoothCurve(5, 0.5);
    EQMatchEngine engine;
    engine.maxBands = static_cast<std::int32_t>(state.range(0));
    engine.minFrequency = 10.0f;
    engine.maxFrequency = 30000.0f;
    engine.minLog2Frequency = static_cast<float>(std::log2(match::lowestHz));
    engine.maxLog2Frequency = static_cast<float>(std::log2(match::highestHz));
    for (auto _ : state) {
        engine.prepare(curve, match::rate);
        engine.run();
    }
    state.counters["evaluations"] = static_cast<double>(engine.evaluationCount());
}
BENCHMARK(matchCurve)->Arg(1)->Arg(2)->Arg(4)->Arg(8)->Arg(16)->Arg(24)->Unit(benchmark::kMillisecond);

} // namespace
