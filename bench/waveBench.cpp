// What the blocks of the graph cost for each sample, in cycles of 256, beside the plainest loop that does the same.
#include "base/IntervalTimer.h"
#include "wave/Delay.h"
#include "wave/Environment.h"
#include "wave/FloatParameter.h"
#include "wave/FloatParameterSource.h"
#include "wave/LevelMeter.h"
#include "wave/Mixer.h"
#include "wave/Producer.h"
#include "wave/SafetyLimiter.h"
#include "wave/VolumeFilter.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <vector>

namespace {

constexpr std::int32_t count = 256;

void perSample(benchmark::State& state) {
    state.counters["per_sample"] =
        benchmark::Counter(count, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

// Its samples are made before the clock runs.
class Noise final : public wave::Producer {
public:
    explicit Noise(wave::Environment& owner, std::uint32_t seed) : Producer(owner), made(owner) {
        std::uint32_t bits = seed;
        for (std::int32_t index = 0; index < count; ++index) {
            bits = bits * 1664525u + 1013904223u;
            made[index] = static_cast<float>(bits >> 8) / 8388608.0f - 1.0f;
        }
    }
    void process(wave::BasicBlock<float>&, std::int32_t, std::uint32_t) noexcept REALTIME override { output = &made; }
    const float* data() const { return made.data(); }

private:
    wave::BasicBlock<float> made;
};

void runProducer(benchmark::State& state, wave::Environment& environment, wave::Producer& producer) {
    for (auto _ : state) {
        environment.beginCycle();
        benchmark::DoNotOptimize(producer.pull(count).data());
        environment.runCycle(count, true);
    }
    perSample(state);
}

void floatParameterAtRest(benchmark::State& state) {
    wave::Environment environment;
    FloatParameterSource source(environment, 0.5f);
    runProducer(state, environment, source);
}

void floatParameterMoving(benchmark::State& state) {
    wave::Environment environment;
    FloatParameterSource source(environment, 0.0f);
    float target = 1.0f;
    for (auto _ : state) {
        source.parameter.setValue(target, 6.0f); // a little longer than the cycle
        target = 1.0f - target;
        environment.beginCycle();
        benchmark::DoNotOptimize(source.pull(count).data());
        environment.runCycle(count, true);
    }
    perSample(state);
}

void fillLoop(benchmark::State& state) {
    std::array<float, count> block;
    for (auto _ : state) {
        block.fill(0.5f);
        benchmark::DoNotOptimize(block.data());
        benchmark::ClobberMemory();
    }
    perSample(state);
}

struct Sixteen {
    Sixteen() {
        for (std::uint32_t seed = 1; seed <= 16; ++seed)
            noises.push_back(std::make_unique<Noise>(environment, seed));
    }
    wave::Environment environment;
    std::vector<std::unique_ptr<Noise>> noises;
};

void mixerOf16(benchmark::State& state, float weight, bool moving) {
    Sixteen sixteen;
    Mixer mixer(sixteen.environment);
    for (const auto& noise : sixteen.noises)
        mixer.addInput(noise.get(), weight);
    if (moving)
        mixer.weight(7).connect(sixteen.noises[3].get());
    runProducer(state, sixteen.environment, mixer);
}

void mixerLoop(benchmark::State& state) {
    Sixteen sixteen;
    std::array<float, count> out;
    for (auto _ : state) {
        out.fill(0.0f);
        for (const auto& noise : sixteen.noises)
            for (std::size_t index = 0; index < out.size(); ++index)
                out[index] += noise->data()[index] * 0.5f;
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    perSample(state);
}

class NoTimer final : public IntervalTimer {
public:
    std::uint32_t elapsed() const override { return 0; }
    void reset() override {}
};

void levelMeter(benchmark::State& state, bool polled) {
    wave::Environment environment;
    Noise noise(environment, 1);
    LevelMeter meter(environment, std::make_unique<NoTimer>());
    meter.input = &noise;
    for (auto _ : state) {
        environment.beginCycle();
        environment.runCycle(count, false);
        if (polled)
            benchmark::DoNotOptimize(meter.level(LevelSource::Info::level));
    }
    perSample(state);
}

void levelLoop(benchmark::State& state) {
    wave::Environment environment;
    Noise noise(environment, 1);
    for (auto _ : state) {
        float largest = 0.0f;
        for (std::int32_t index = 0; index < count; ++index)
            largest = std::max(largest, std::fabs(noise.data()[index]));
        benchmark::DoNotOptimize(largest);
        benchmark::ClobberMemory();
    }
    perSample(state);
}

void volumeFilter(benchmark::State& state, float gain) {
    wave::Environment environment;
    Noise noise(environment, 1);
    VolumeFilter filter(environment, gain);
    filter.input = &noise;
    runProducer(state, environment, filter);
}

void safetyLimiter(benchmark::State& state, float ceilingDb) {
    wave::Environment environment;
    Noise noise(environment, 1);
    SafetyLimiter limiter(environment);
    limiter.input = &noise;
    limiter.ceiling = ceilingDb;
    runProducer(state, environment, limiter);
}

void delay(benchmark::State& state) {
    wave::Environment environment;
    Noise noise(environment, 1);
    wave::Delay line(environment, 66560);
    std::array<float, count> out;
    for (auto _ : state) {
        line.write(noise.data(), count);
        line.read(66560, out.data(), count);
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    perSample(state);
}

BENCHMARK(floatParameterAtRest);
BENCHMARK(floatParameterMoving);
BENCHMARK(fillLoop);
BENCHMARK_CAPTURE(mixerOf16, steady, 0.5f, false);
BENCHMARK_CAPTURE(mixerOf16, oneMoving, 0.5f, true);
BENCHMARK_CAPTURE(mixerOf16, allAtZero, 0.0f, false);
BENCHMARK(mixerLoop);
BENCHMARK_CAPTURE(levelMeter, unread, false);
BENCHMARK_CAPTURE(levelMeter, polled, true);
BENCHMARK(levelLoop);
BENCHMARK_CAPTURE(volumeFilter, one, 1.0f);
BENCHMARK_CAPTURE(volumeFilter, half, 0.5f);
BENCHMARK_CAPTURE(safetyLimiter, atWork, -6.0f);
BENCHMARK_CAPTURE(safetyLimiter, below, 6.0f);
BENCHMARK(delay);

} // namespace
