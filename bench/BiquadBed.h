// What the benchmarks of filters share: a bed of sections with sound for them, the reference loop that ratios are taken
// against, and how time is told a frame.
#pragma once

#include "eq/BiquadKernels.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

constexpr std::size_t blockSize = 256;

// Gentle bells at many frequencies, in direct form.
inline std::vector<double> directRows(std::size_t sections) {
    std::vector<double> rows;
    for (std::size_t s = 0; s < sections; ++s) {
        const double w = 0.01 + 0.09 * static_cast<double>(s % 24);
        const double alpha = std::sin(w) / 2.0, gain = 1.1;
        const double a0 = 1.0 + alpha / gain;
        rows.insert(rows.end(), {(1.0 + alpha * gain) / a0, -2.0 * std::cos(w) / a0, (1.0 - alpha * gain) / a0,
                                 -2.0 * std::cos(w) / a0, (1.0 - alpha / gain) / a0});
    }
    return rows;
}

// Sections with memory, and the two channels of sound they work on.
struct Bed {
    explicit Bed(std::vector<double> wanted) : rows(std::move(wanted)) {
        const std::size_t count = rows.size() / BiquadSection::rowLength;
        memory.assign(count * 2 * BiquadSection::memoryLength, 0.0);
        for (std::size_t s = 0; s < count; ++s)
            sections.push_back({rows.data() + s * BiquadSection::rowLength,
                                {memory.data() + s * BiquadSection::memoryLength,
                                 memory.data() + (count + s) * BiquadSection::memoryLength}});
        std::uint32_t random = 1;
        for (auto& channel : sound)
            for (float& sample : channel) {
                random = random * 1664525u + 1013904223u; // the generator of Numerical Recipes
                sample = static_cast<float>(random >> 8) * 0x1p-24f - 0.5f;
            }
    }

    Bed(const Bed&) = delete;
    Bed& operator=(const Bed&) = delete;

    std::vector<double> rows, memory;
    std::vector<BiquadSection> sections;
    std::array<std::array<float, blockSize>, 2> sound;
    std::array<std::array<float, blockSize>, 2> result;
};

inline void countFrames(benchmark::State& state, std::size_t block) {
    state.counters["nsPerFrame"] =
        benchmark::Counter(static_cast<double>(state.iterations()) * static_cast<double>(block) * 1e-9,
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

#if defined(__SSE2__)
// The baseline of all figures here: both channels in the lanes of one vector, section by section.
inline void referenceLoop(const BiquadPass& pass) noexcept {
    const float* in0 = pass.input[0];
    const float* in1 = pass.input[1];
    for (std::size_t s = 0; s < pass.sectionCount; ++s) {
        const BiquadSection& section = pass.sections[s];
        const auto both = [&](int i) { return _mm_set_pd(section.memory[1][i], section.memory[0][i]); };
        __m128d x1 = both(0), x2 = both(1), y1 = both(2), y2 = both(3);
        const __m128d b0 = _mm_set1_pd(section.row[0]), b1 = _mm_set1_pd(section.row[1]),
                      b2 = _mm_set1_pd(section.row[2]), a1 = _mm_set1_pd(section.row[3]),
                      a2 = _mm_set1_pd(section.row[4]);
        for (std::size_t i = 0; i < pass.runLengths[0]; ++i) {
            const __m128d x = _mm_cvtps_pd(_mm_set_ps(0.0f, 0.0f, in1[i], in0[i]));
            __m128d y = _mm_add_pd(_mm_mul_pd(b0, x), _mm_mul_pd(b1, x1));
            y = _mm_add_pd(y, _mm_mul_pd(b2, x2));
            y = _mm_sub_pd(y, _mm_mul_pd(a1, y1));
            y = _mm_sub_pd(y, _mm_mul_pd(a2, y2));
            x2 = x1;
            x1 = x;
            y2 = y1;
            y1 = y;
            const __m128 rounded = _mm_cvtpd_ps(y);
            _mm_store_ss(pass.output[0] + i, rounded);
            _mm_store_ss(pass.output[1] + i, _mm_shuffle_ps(rounded, rounded, 1));
        }
        const auto store = [](double* memory, double v0, double v1, double v2, double v3) {
            memory[0] = v0;
            memory[1] = v1;
            memory[2] = v2;
            memory[3] = v3;
        };
        store(section.memory[0], _mm_cvtsd_f64(x1), _mm_cvtsd_f64(x2), _mm_cvtsd_f64(y1), _mm_cvtsd_f64(y2));
        const auto high = [](__m128d v) { return _mm_cvtsd_f64(_mm_unpackhi_pd(v, v)); };
        store(section.memory[1], high(x1), high(x2), high(y1), high(y2));
        in0 = pass.output[0];
        in1 = pass.output[1];
    }
}
#endif
