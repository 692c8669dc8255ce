// Filters, in nanoseconds a stereo frame (time / frames). Ratios inside one run are what counts.
#include "bench/BiquadBed.h"
#include "eq/BiquadKernels.h"
#include "eq/EQFilter.h"
#include "eq/EQResponses.h"
#include "eq/NaturalPhaseFrequencyResponseSource.h"
#include "wave/Input.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

std::vector<double> stateVariableRows(std::size_t sections) {
    std::vector<double> rows;
    for (std::size_t s = 0; s < sections; ++s) {
        const double g = std::tan(0.005 + 0.045 * static_cast<double>(s % 24));
        rows.insert(rows.end(), {g, 1.0 + g, 1.0, 1.1, 1.0});
    }
    return rows;
}

// `grouping` sections are handed over at a time, as they would be by a filter of that many.
void kernels(benchmark::State& state, BiquadKernel kernel, const std::vector<double>& rows, std::size_t grouping,
             std::size_t channels, std::size_t block) {
    Bed bed(rows);
    const auto length = static_cast<std::uint32_t>(block);
    for (auto _ : state) {
        const float* in0 = bed.sound[0].data();
        const float* in1 = bed.sound[1].data();
        for (std::size_t s = 0; s < bed.sections.size(); s += grouping) {
            kernel({.sections = bed.sections.data() + s,
                    .sectionCount = grouping,
                    .runLengths = &length,
                    .runCount = 1,
                    .rowStride = 0,
                    .input = {in0, channels > 1 ? in1 : nullptr},
                    .output = {bed.result[0].data(), channels > 1 ? bed.result[1].data() : nullptr}});
            in0 = bed.result[0].data();
            in1 = bed.result[1].data();
        }
        benchmark::ClobberMemory();
    }
    countFrames(state, block);
}

#if defined(__SSE2__)
// A wide kernel that leaves the upper halves of the registers in use slows all that follows: this must be the sum of
// reference/8 and wide/direct/8.
void referenceLoopAfterWide(const BiquadPass& pass) noexcept {
    wideBiquadKernels()->direct[1](pass);
    referenceLoop(pass);
}
#endif

void addKernels() {
    struct Set {
        const char* name;
        const BiquadKernels* kernels;
    };
    const auto label = [](std::string name, std::size_t number) { return name.append(std::to_string(number)); };
    const auto add = [](const std::string& name, auto... arguments) {
        benchmark::RegisterBenchmark(name.c_str(), kernels, arguments...);
    };
#if defined(__SSE2__)
    for (const std::size_t sections : {1u, 8u, 24u})
        add(label("reference/", sections), referenceLoop, directRows(sections), sections, 2u, blockSize);
    if (wideBiquadKernels() != nullptr)
        add("referenceAfterWide/8", referenceLoopAfterWide, directRows(8), 8u, 2u, blockSize);
#endif
    for (const Set& set : {Set{"plain", &plainBiquadKernels()}, Set{"wide", wideBiquadKernels()}}) {
        if (set.kernels == nullptr)
            continue;
        const std::string name = set.name;
        for (const std::size_t sections : {1u, 2u, 3u, 4u, 5u, 6u, 7u, 8u, 24u}) {
            const std::string count = label("/", sections);
            add(name + "/direct" + count, set.kernels->direct[1], directRows(sections), sections, 2u, blockSize);
            add(name + "/directOneChannel" + count, set.kernels->direct[0], directRows(sections), sections, 1u,
                blockSize);
            add(name + "/stateVariable" + count, set.kernels->stateVariable[1], stateVariableRows(sections), sections,
                2u, blockSize);
        }
        add(name + "/direct/24by1", set.kernels->direct[1], directRows(24), 1u, 2u, blockSize);
        for (const std::size_t block : {32u, 64u, 128u})
            add(label(name + "/direct/8/block", block), set.kernels->direct[1], directRows(8), 8u, 2u, block);
    }
}

// Bands one behind the other on two channels, as they stand in a chain.
struct Chain {
    Chain(std::size_t bands, FilterSlope slope, bool gainMoves)
        : inputs{wave::Input(environment), wave::Input(environment)} {
        environment.setSampleRate(48000.0f);
        for (std::size_t b = 0; b < bands; ++b)
            for (std::size_t c = 0; c < 2; ++c) {
                auto& side = filters[c];
                if (b + c == 0)
                    side.push_back(std::make_unique<EQFilter>(environment, 8, 1));
                else
                    side.push_back(std::make_unique<EQFilter>(environment, 8, *filters[0].front()));
                EQFilter& filter = *side.back();
                filter.input = b > 0 ? static_cast<wave::Producer*>(side[b - 1].get()) : &inputs[c];
                filter.slope = slope;
                filter.gainModulated = gainMoves;
                filter.frequency.assign(6.0f + 8.0f * static_cast<float>(b) / static_cast<float>(bands));
                filter.gain.assign(b % 2 == 0 ? 1.0f : -1.0f);
                if (c == 1) {
                    filter.setPartner(filters[0][b].get());
                    filter.setLink(true);
                }
            }
    }

    ~Chain() { // the first owns the queues of all
        for (std::size_t c = 2; c-- > 0;)
            while (!filters[c].empty())
                filters[c].pop_back();
    }

    void cycle(const std::array<std::array<float, blockSize>, 2>& sound) {
        for (std::size_t c = 0; c < 2; ++c)
            inputs[c].setSamples(sound[c]);
        environment.beginCycle();
        for (auto& side : filters)
            side.back()->pull(blockSize);
        environment.runCycle(blockSize, false);
    }

    template <typename Setting>
    void set(Setting setting) {
        for (auto& side : filters)
            for (auto& filter : side)
                setting(*filter);
    }

    wave::Environment environment;
    wave::Input inputs[2];
    std::vector<std::unique_ptr<EQFilter>> filters[2];
};

using Movement = std::function<void(Chain&, std::size_t)>; // before each block

void chain(benchmark::State& state, std::size_t bands, FilterSlope slope, bool gainMoves, const Movement& move) {
    const Bed bed(directRows(1));
    Chain filters(bands, slope, gainMoves);
    for (int i = 0; i < 100; ++i)
        filters.cycle(bed.sound);
    std::size_t block = 0;
    for (auto _ : state) {
        if (move)
            move(filters, block++);
        filters.cycle(bed.sound);
        benchmark::ClobberMemory();
    }
    countFrames(state, blockSize);
}

void addChains() {
    const auto add = [](const char* name, auto... arguments) {
        benchmark::RegisterBenchmark(name, chain, arguments...);
    };
    const auto fall = [](Chain& filters, std::size_t block) { // there and back in 100 ms
        const float to = block / 18 % 2 == 0 ? 5.0f : 13.0f;
        if (block % 18 == 0)
            filters.set([&](EQFilter& filter) { filter.frequency.parameter().setValue(to, 100.0f); });
    };
    const auto pump = [](Chain& filters, std::size_t block) {
        const float to = block / 18 % 2 == 0 ? -12.0f : 12.0f;
        if (block % 18 == 0)
            filters.set([&](EQFilter& filter) { filter.gain.parameter().setValue(to, 100.0f); });
    };
    add("chain/1bell", 1u, FilterSlope::db12, false, Movement{});
    add("chain/8bells", 8u, FilterSlope::db12, false, Movement{});
    add("chain/24bells", 24u, FilterSlope::db12, false, Movement{});
    add("chain/1bellOf96Db", 1u, FilterSlope::db96, false, Movement{});
    add("chain/24bellsOf96Db", 24u, FilterSlope::db96, false, Movement{});
    add("chain/1bellSweeps", 1u, FilterSlope::db12, false, Movement{fall});
    add("chain/1bellOf96DbSweeps", 1u, FilterSlope::db96, false, Movement{fall});
    add("chain/1gainMovesAtEverySample", 1u, FilterSlope::db12, true, Movement{pump});
    add("chain/1gainOf96DbMovesAtEverySample", 1u, FilterSlope::db96, true, Movement{pump});
}

// What Natural Phase asks for after a change: the responses of one band anew, and the correction of 24.
void responses(benchmark::State& state, std::size_t changed) {
    constexpr std::int32_t steps = 256;
    DiscreteFrequencyResponseSource::Mapping grid(false, 0.0f, 24000.0f, steps);
    AlignedBuffer<float> radians(steps + 1);
    for (std::int32_t i = 0; i <= steps; ++i)
        radians[i] = 0.012271846f * static_cast<float>(i); // pi / 256
    struct Band {
        Band(DiscreteFrequencyResponseSource::Mapping& grid, const AlignedBuffer<float>& radians, double w)
            : analog(grid, radians, prototype), digital(grid, radians, prototype) {
            prototype.design(AnalogFilterPrototype::Kind::butterworth, FilterShape::bell, 2, 1.0f, 1.2f);
            prototype.setFrequency(w, 1.0 / w);
            coefficients(prototype, digital.row, CoefficientCalculation::magnitudeMatch, SectionForm::direct);
            analog.resize(steps + 1);
            digital.resize(steps + 1);
        }
        AnalogFilterPrototype prototype;
        EQAnalogResponse analog;
        EQBiquadResponse digital;
    };
    std::vector<std::unique_ptr<Band>> bands;
    NaturalPhaseFrequencyResponseSource source(grid);
    for (int b = 0; b < 24; ++b) {
        bands.push_back(std::make_unique<Band>(grid, radians, 0.1 + 0.1 * b));
        source.numerators.push_back(&bands.back()->analog);
        source.denominators.push_back(&bands.back()->digital);
    }
    std::vector<std::complex<float>> out(steps + 1);
    for (auto _ : state) {
        for (std::size_t b = 0; b < changed; ++b) {
            bands[b]->analog.invalidate();
            bands[b]->digital.invalidate();
        }
        source.responses(0, out);
        benchmark::ClobberMemory();
    }
}

void addResponses() {
    for (const std::size_t changed : {0u, 1u, 24u})
        benchmark::RegisterBenchmark(
            std::string("naturalPhase/24bands/changed").append(std::to_string(changed)).c_str(), responses, changed);
}

} // namespace

int main(int argumentCount, char** arguments) {
    benchmark::Initialize(&argumentCount, arguments);
    addKernels();
    addChains();
    addResponses();
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
