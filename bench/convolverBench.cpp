// The transform and the convolver against plain FFTW. Repeat: build/bench/bench_convolver
#include "wave/FFTBlock.h"

#include <benchmark/benchmark.h>
#include <fftw3.h>

#include <algorithm>
#include <cstdint>

namespace {

void transformOurs(benchmark::State& state) {
    const FFTPlan plan(static_cast<std::int32_t>(state.range(0)));
    FFTBlock block(plan);
    std::fill_n(block.data(), plan.getSize(), 0.0f);
    for (auto _ : state) {
        block.transform();
        benchmark::DoNotOptimize(block.data());
        block.data()[0] = 1e-10f;
    }
}

void inverseOurs(benchmark::State& state) {
    const FFTPlan plan(static_cast<std::int32_t>(state.range(0)));
    FFTBlock block(plan);
    std::fill_n(block.data(), plan.getSize(), 0.0f);
    for (auto _ : state) {
        block.transformInverse();
        benchmark::DoNotOptimize(block.data());
        block.data()[0] = 1e-10f;
    }
}

void transformFftw(benchmark::State& state) {
    const int size = static_cast<int>(state.range(0));
    float* samples = fftwf_alloc_real(static_cast<std::size_t>(size));
    fftwf_complex* bins = fftwf_alloc_complex(static_cast<std::size_t>(size / 2 + 1));
    const fftwf_plan plan = fftwf_plan_dft_r2c_1d(size, samples, bins, FFTW_MEASURE);
    std::fill_n(samples, size, 0.0f);
    for (auto _ : state) {
        fftwf_execute(plan);
        benchmark::DoNotOptimize(bins);
    }
    fftwf_destroy_plan(plan);
    fftwf_free(samples);
    fftwf_free(bins);
}

BENCHMARK(transformOurs)->RangeMultiplier(2)->Range(64, 131072);
BENCHMARK(inverseOurs)->RangeMultiplier(2)->Range(64, 131072);
BENCHMARK(transformFftw)->RangeMultiplier(2)->Range(64, 131072);

} // namespace
