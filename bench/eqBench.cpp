// The cost of one design: prototype, points, fit and row of one band, as a moving band pays it.
#include "eq/BandDesign.h"
#include "eq/SectionCoefficients.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cmath>

namespace {

constexpr double radiansPerHz = 2.0 * 3.141592653589793 / 48000.0;

using Numbers = std::array<double, sectionLength * AnalogFilterPrototype::maxSections>;

// Settings that move a little each time, so that no branch is always taken alike and nothing can be kept.
struct Moving {
    std::size_t step = 0;
    std::array<double, 64> frequencies{};
    std::array<float, 64> gains{};
    std::array<float, 64> qs{};

    Moving() {
        for (std::size_t i = 0; i < 64; ++i) {
            frequencies[i] = 40.0 * std::exp2(static_cast<double>(i * 37 % 64) / 64.0 * 8.8) * radiansPerHz;
            gains[i] = static_cast<float>(static_cast<int>(i * 29 % 64) - 32) * 0.4f + 0.1f;
            qs[i] = 0.2f * std::exp2(static_cast<float>(i * 11 % 64) / 12.0f);
        }
    }
};

void design(benchmark::State& state, CoefficientCalculation calculation) {
    const FilterShape shape = static_cast<FilterShape>(state.range(0));
    const FilterSlope slope = static_cast<FilterSlope>(state.range(1));
    Moving moving;
    AnalogFilterPrototype prototype;
    Numbers numbers{};
    for (auto _ : state) {
        const std::size_t i = moving.step++ % 64;
        designBand(shape, slope, moving.gains[i], moving.qs[i], moving.frequencies[i], prototype,
                   flatTiltHz * radiansPerHz);
        coefficients(prototype, numbers, calculation, SectionForm::direct);
        benchmark::DoNotOptimize(numbers);
    }
    state.counters["sections"] = prototype.sectionCount;
}

void matchedDesign(benchmark::State& state) {
    design(state, CoefficientCalculation::magnitudeMatch);
}

void bilinearDesign(benchmark::State& state) {
    design(state, CoefficientCalculation::bilinear);
}

void analogDesign(benchmark::State& state) {
    const FilterShape shape = static_cast<FilterShape>(state.range(0));
    const FilterSlope slope = static_cast<FilterSlope>(state.range(1));
    Moving moving;
    AnalogFilterPrototype prototype;
    for (auto _ : state) {
        const std::size_t i = moving.step++ % 64;
        designBand(shape, slope, moving.gains[i], moving.qs[i], moving.frequencies[i], prototype,
                   flatTiltHz * radiansPerHz);
        benchmark::DoNotOptimize(prototype);
    }
}

void everyShapeAndSlope(benchmark::internal::Benchmark* bench) {
    for (const FilterShape shape :
         {FilterShape::lowPass, FilterShape::lowShelf, FilterShape::highPass, FilterShape::highShelf,
          FilterShape::tiltShelf, FilterShape::bell, FilterShape::bandPass, FilterShape::notch, FilterShape::flatTilt})
        for (const FilterSlope slope :
             {FilterSlope::db6, FilterSlope::db12, FilterSlope::db18, FilterSlope::db24, FilterSlope::db30,
              FilterSlope::db36, FilterSlope::db48, FilterSlope::db72, FilterSlope::db96, FilterSlope::brickwall})
            if (slope == FilterSlope::db12 || (shape != FilterShape::flatTilt && slopeIsExact(shape, slope)))
                bench->Args({static_cast<int>(shape), static_cast<int>(slope)});
}

// A curve of the display: 1024 points.
void curve(benchmark::State& state) {
    AnalogFilterPrototype prototype;
    designBand(FilterShape::bell, static_cast<FilterSlope>(state.range(0)), 6.0f, 2.0f, 0.1, prototype, 0.08);
    alignas(64) std::array<float, 1024> w{}, out{};
    for (std::size_t i = 0; i < w.size(); ++i)
        w[i] = 0.002f * std::exp2(static_cast<float>(i) / 100.0f);
    for (auto _ : state) {
        prototype.squaredMagnitudes(w.data(), out.data(), w.size());
        benchmark::DoNotOptimize(out);
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * 1024);
}

BENCHMARK(matchedDesign)->Apply(everyShapeAndSlope)->ArgNames({"shape", "slope"});
BENCHMARK(analogDesign)->Apply(everyShapeAndSlope)->ArgNames({"shape", "slope"});
BENCHMARK(bilinearDesign)->Args({7, 1})->Args({7, 8})->ArgNames({"shape", "slope"});
BENCHMARK(curve)->Arg(1)->Arg(8)->ArgName("slope");

} // namespace
