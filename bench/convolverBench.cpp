// The transform and the convolver against plain FFTW. Repeat: build/bench/bench_convolver
// Only ratios within one run mean something on a machine that others use too.
#include "eq/Convolver.h"
#include "eq/ConvolverConfiguration.h"
#include "eq/DiscreteFrequencyResponseSource.h"
#include "eq/FrequencyResponseKernel.h"
#include "eq/ProcessingTypes.h"
#include "wave/Environment.h"
#include "wave/FFTBlock.h"

#include <benchmark/benchmark.h>
#include <fftw3.h>

#include <algorithm>
#include <chrono>
#include <complex>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <random>
#include <span>
#include <vector>

namespace {

std::vector<float> noise(std::size_t count) {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> range(-1.0f, 1.0f);
    std::vector<float> samples(count);
    for (float& sample : samples)
        sample = range(random);
    return samples;
}

// The inputs are small, so that a transform of what the last one left stays finite for any number of rounds.
void transformOurs(benchmark::State& state) {
    const FFTPlan plan(static_cast<std::int32_t>(state.range(0)));
    FFTBlock block(plan);
    for (auto _ : state) {
        block.transform();
        benchmark::DoNotOptimize(block.data());
        benchmark::ClobberMemory();
    }
}

void inverseOurs(benchmark::State& state) {
    const FFTPlan plan(static_cast<std::int32_t>(state.range(0)));
    FFTBlock block(plan);
    for (auto _ : state) {
        block.transformInverse();
        benchmark::DoNotOptimize(block.data());
        benchmark::ClobberMemory();
    }
}

// Real and imaginary parts in arrays of their own, which suits the compiler's vectors.
struct FftwPlan {
    explicit FftwPlan(int size)
        : half(static_cast<std::size_t>(size / 2))
        , samples(fftwf_alloc_real(2 * half))
        , re(fftwf_alloc_real(half + 1))
        , im(fftwf_alloc_real(half + 1)) {
        const fftwf_iodim dimension{size, 1, 1};
        forward = fftwf_plan_guru_split_dft_r2c(1, &dimension, 0, nullptr, samples, re, im, FFTW_MEASURE);
        inverse = fftwf_plan_guru_split_dft_c2r(1, &dimension, 0, nullptr, re, im, samples, FFTW_MEASURE);
        std::fill_n(samples, size, 0.0f);
    }
    FftwPlan(const FftwPlan&) = delete;
    FftwPlan& operator=(const FftwPlan&) = delete;
    ~FftwPlan() {
        fftwf_destroy_plan(forward);
        fftwf_destroy_plan(inverse);
        for (float* array : {samples, re, im})
            fftwf_free(array);
    }

    std::size_t half;
    float* samples;
    float* re;
    float* im;
    fftwf_plan forward;
    fftwf_plan inverse;
};

void transformFftw(benchmark::State& state) {
    const int size = static_cast<int>(state.range(0)); // interleaved: the road that FFTW is best at
    float* const samples = fftwf_alloc_real(static_cast<std::size_t>(size));
    fftwf_complex* const bins = fftwf_alloc_complex(static_cast<std::size_t>(size / 2 + 1));
    const fftwf_plan plan = fftwf_plan_dft_r2c_1d(size, samples, bins, FFTW_MEASURE);
    std::fill_n(samples, size, 0.0f);
    for (auto _ : state) {
        fftwf_execute(plan);
        benchmark::DoNotOptimize(bins);
        benchmark::ClobberMemory();
    }
    fftwf_destroy_plan(plan);
    fftwf_free(samples);
    fftwf_free(bins);
}

#if defined(__x86_64__)
__attribute__((target("avx2,fma"))) // as wide as what it is compared with
#endif
void addProduct(const float* __restrict a, const float* __restrict b, float* __restrict re, float* __restrict im,
                std::size_t bins, std::size_t room) {
    for (std::size_t bin = 0; bin < bins; ++bin) {
        re[bin] += a[bin] * b[bin] - a[room + bin] * b[room + bin];
        im[bin] += a[bin] * b[room + bin] + a[room + bin] * b[bin];
    }
}

// Overlap-save as one writes it first: partitions of 512, everything at the end of each of them.
class PlainConvolver {
public:
    static constexpr std::size_t hop = 512;
    static constexpr std::size_t bins = hop + 1;
    static constexpr std::size_t room = hop + 16;

    explicit PlainConvolver(std::size_t length)
        : plan(2 * hop), count(length / hop), kernel(count, std::vector<float>(2 * room)), inputs(kernel) {
        const std::vector<float> taps = noise(length);
        for (std::size_t part = 0; part < count; ++part) {
            std::fill_n(plan.samples, 2 * hop, 0.0f);
            std::copy_n(&taps[part * hop], hop, plan.samples);
            transformInto(kernel[part]);
        }
    }

    void process(const float* input, float* output) { // one hop
        std::copy_n(previous.data(), hop, plan.samples);
        std::copy_n(input, hop, plan.samples + hop);
        std::copy_n(input, hop, previous.data());
        newest = (newest + count - 1) % count;
        transformInto(inputs[newest]);
        std::fill_n(plan.re, bins, 0.0f);
        std::fill_n(plan.im, bins, 0.0f);
        for (std::size_t part = 0; part < count; ++part)
            addProduct(inputs[(newest + part) % count].data(), kernel[part].data(), plan.re, plan.im, bins, room);
        fftwf_execute(plan.inverse);
        for (std::size_t index = 0; index < hop; ++index)
            output[index] = plan.samples[hop + index] * (0.5f / hop);
    }

private:
    void transformInto(std::vector<float>& spectrum) const {
        fftwf_execute(plan.forward);
        std::copy_n(plan.re, bins, spectrum.data());
        std::copy_n(plan.im, bins, spectrum.data() + room);
    }

    FftwPlan plan;
    std::size_t count;
    std::size_t newest = 0;
    std::vector<std::vector<float>> kernel;
    std::vector<std::vector<float>> inputs;
    std::vector<float> previous = std::vector<float>(hop);
};

void convolvePlainFftw(benchmark::State& state) {
    PlainConvolver left(static_cast<std::size_t>(state.range(0)));
    PlainConvolver right(static_cast<std::size_t>(state.range(0)));
    const std::vector<float> input = noise(PlainConvolver::hop);
    std::vector<float> output(PlainConvolver::hop);
    for (auto _ : state) {
        left.process(input.data(), output.data());
        benchmark::DoNotOptimize(output.data());
        right.process(input.data(), output.data());
        benchmark::DoNotOptimize(output.data());
    }
    state.counters["ns/frame"] = benchmark::Counter(static_cast<double>(state.iterations()) * PlainConvolver::hop,
                                                    benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

// Costs next to nothing, so that the rest of the work on a kernel shows.
class NoiseResponse final : public DiscreteFrequencyResponseSource {
public:
    explicit NoiseResponse(std::int32_t length)
        : DiscreteFrequencyResponseSource(grid)
        , grid(false, 0.0f, 1.0f, length / 2)
        , magnitudes(noise(static_cast<std::size_t>(length / 2 + 1))) {}

    std::complex<float> response(std::int32_t index) noexcept override {
        return magnitudes[static_cast<std::size_t>(index)];
    }
    void responses(std::int32_t start, std::span<std::complex<float>> out) noexcept override {
        std::copy_n(magnitudes.begin() + start, out.size(), out.begin());
    }
    float squaredMagnitude(std::int32_t index) noexcept override { return std::norm(response(index)); }
    void squaredMagnitudes(std::int32_t, std::span<float>) noexcept override {}

private:
    Mapping grid;
    std::vector<float> magnitudes;
};

struct Stereo {
    Stereo(std::int32_t length, std::int32_t minimumBlock)
        : configuration(FrequencyResponseKernel::makeConfiguration(
              minimumBlock < 1024 ? ProcessingMode::naturalPhase : ProcessingMode::linearPhase, length, minimumBlock,
              static_cast<double>(environment.sampleRate)))
        , source(length)
        , in(environment)
        , out(environment) {
        for (int channel = 0; channel < 2; ++channel) {
            kernels.push_back(std::make_unique<FrequencyResponseKernel>(environment, *configuration, source));
            kernels.back()->setEvaluationWeight(20);
            convolvers.push_back(std::make_unique<Convolver>(environment, *kernels.back()));
        }
        const std::vector<float> samples = noise(256);
        std::copy(samples.begin(), samples.end(), in.data());
        for (std::int32_t done = 0; done < 2 * length; done += 64)
            process(64, false);
    }

    void process(std::int32_t count, bool dragged) {
        environment.beginCycle();
        for (std::size_t channel = 0; channel < 2; ++channel) {
            if (dragged)
                kernels[channel]->setDirty();
            convolvers[channel]->filter(in, out, count, wave::Producer::modePulled);
            benchmark::DoNotOptimize(out.data());
        }
        environment.runCycle(count, false);
    }

    wave::Environment environment;
    std::unique_ptr<Convolver::Configuration> configuration;
    NoiseResponse source;
    std::vector<std::unique_ptr<FrequencyResponseKernel>> kernels;
    std::vector<std::unique_ptr<Convolver>> convolvers;
    wave::BasicBlock<float> in;
    wave::BasicBlock<float> out;
};

// Arguments: taps, smallest transform, host block, a new kernel as often as can be. The load of a block comes back
// with each hop of the top level: the best of all rounds at each place of it shows the work without the disturbances of
// the machine.
void convolveOurs(benchmark::State& state) {
    using Clock = std::chrono::steady_clock;
    Stereo stereo(static_cast<std::int32_t>(state.range(0)), static_cast<std::int32_t>(state.range(1)));
    const auto block = static_cast<std::int32_t>(state.range(2));
    const bool dragged = state.range(3) != 0;
    const auto places = static_cast<std::size_t>(std::max(stereo.configuration->getHop() / block, 1)) * 4;
    std::vector<double> best(places, 1e9);
    for (auto _ : state)
        for (double& place : best) {
            const Clock::time_point begin = Clock::now();
            stereo.process(block, dragged);
            place = std::min(place, std::chrono::duration<double, std::nano>(Clock::now() - begin).count());
        }
    double sum = 0.0;
    for (const double place : best)
        sum += place;
    const double mean = sum / static_cast<double>(places);
    state.counters["ns/frame"] =
        benchmark::Counter(static_cast<double>(state.iterations()) * static_cast<double>(places) * block,
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
    state.counters["worst/mean"] = *std::max_element(best.begin(), best.end()) / mean;
}

void lengths(benchmark::internal::Benchmark* benchmark) {
    for (const std::int64_t dragged : {0, 1})
        for (const std::int64_t block : {64, 256})
            for (const std::int64_t length : {4096, 8192, 16384, 32768, 131072})
                benchmark->Args({length, 1024, block, dragged});
    for (const std::int64_t dragged : {0, 1})
        benchmark->Args({512, 64, 64, dragged})->Args({512, 64, 256, dragged});
}

BENCHMARK(transformOurs)->RangeMultiplier(2)->Range(1024, 131072);
BENCHMARK(inverseOurs)->RangeMultiplier(2)->Range(1024, 131072);
BENCHMARK(transformFftw)->RangeMultiplier(2)->Range(1024, 131072);
BENCHMARK(convolvePlainFftw)->Arg(4096)->Arg(8192)->Arg(16384)->Arg(32768)->Arg(131072);
BENCHMARK(convolveOurs)->ArgNames({"taps", "fft", "block", "dragged"})->Apply(lengths);

} // namespace
