// The sections side by side, as a wave: while one section works on a sample, the section behind it works on an earlier
// one, so that the long wait for each section's own past is filled with the work of the others. One vector holds the
// same step of 2 sections of a pair of channels, or of 4 sections of one channel.
//
// This file alone is compiled for AVX2 and FMA. It includes nothing that defines inline functions which other files
// could share: the linker would keep one copy, and it might be this one.
#include "eq/BiquadKernels.h"

#if defined(__AVX2__) && defined(__FMA__)

#include <immintrin.h>

namespace {

constexpr int lanes = 4;
constexpr int lag = 2;           // samples from section to section: the rounding to float and back takes that long
constexpr int largestWave = 8;   // sections
constexpr int shortestWave = 48; // samples; from here on it pays, and the ways in and out do not overlap
constexpr int rowLength = static_cast<int>(BiquadSection::rowLength);

#define UNROLLED _Pragma("GCC unroll 8")

// Direct form. Inside a wave it runs transposed: two sums instead of four past values, which saves registers.
struct Direct {
    static constexpr int constants = 5;

    static void derive(const double* row, double (*constant)[lanes], int lane) noexcept {
        for (int i = 0; i < constants; ++i)
            constant[i][lane] = row[i];
    }

    static void enter(const double* row, const double* memory, double& s1, double& s2) noexcept {
        s1 = row[1] * memory[0] + row[2] * memory[1] - row[3] * memory[2] - row[4] * memory[3];
        s2 = row[2] * memory[0] - row[4] * memory[2];
    }

    static __m256d step(const double (*constant)[lanes], __m256d x, __m256d& s1, __m256d& s2) noexcept {
        const __m256d y = _mm256_fmadd_pd(_mm256_load_pd(constant[0]), x, s1);
        s1 = _mm256_fnmadd_pd(_mm256_load_pd(constant[3]), y, _mm256_fmadd_pd(_mm256_load_pd(constant[1]), x, s2));
        s2 = _mm256_fnmadd_pd(_mm256_load_pd(constant[4]), y, _mm256_mul_pd(_mm256_load_pd(constant[2]), x));
        return y;
    }

    static void leave(double* memory, double y1, double y2, double, double) noexcept {
        memory[2] = y1;
        memory[3] = y2;
    }
};

// State-variable form, written as what each sample adds to the two integrators: with h = x - R s1 - s2,
// s1 += 2 g d h, s2 += 2 g s1 + 2 g^2 d h, y = (m2 + g m1 + g^2 m0) d h + (m1 + g m0) s1 + m0 s2.
struct StateVariable {
    static constexpr int constants = 7;

    static void derive(const double* row, double (*constant)[lanes], int lane) noexcept {
        const double g = row[0], damping = row[1], m0 = row[2], m1 = row[3], m2 = row[4];
        const double d = 1.0 / (damping * g + 1.0);
        constant[0][lane] = damping;
        constant[1][lane] = 2.0 * g * d;
        constant[2][lane] = 2.0 * g * g * d;
        constant[3][lane] = 2.0 * g;
        constant[4][lane] = (m2 + g * (m1 + g * m0)) * d;
        constant[5][lane] = m1 + g * m0;
        constant[6][lane] = m0;
    }

    static void enter(const double*, const double* memory, double& s1, double& s2) noexcept {
        s1 = memory[2];
        s2 = memory[3];
    }

    static __m256d step(const double (*constant)[lanes], __m256d x, __m256d& s1, __m256d& s2) noexcept {
        const __m256d h = _mm256_fnmadd_pd(_mm256_load_pd(constant[0]), s1, _mm256_sub_pd(x, s2));
        const __m256d past =
            _mm256_fmadd_pd(_mm256_load_pd(constant[5]), s1, _mm256_mul_pd(_mm256_load_pd(constant[6]), s2));
        s2 = _mm256_fmadd_pd(_mm256_load_pd(constant[2]), h, _mm256_fmadd_pd(_mm256_load_pd(constant[3]), s1, s2));
        s1 = _mm256_fmadd_pd(_mm256_load_pd(constant[1]), h, s1);
        return _mm256_fmadd_pd(_mm256_load_pd(constant[4]), h, past);
    }

    static void leave(double* memory, double, double, double s1, double s2) noexcept {
        memory[2] = s1;
        memory[3] = s2;
    }
};

// Up to (lanes / channels) * vectors sections over one run. Section s = group * vectors + k stands in vector k, at lane
// group * channels + channel: so the output of vector k - 1 is the input of vector k as it is, and only vector 0 takes
// its lanes from two places.
template <class Form, int channels, int vectors>
class Wave {
public:
    static constexpr int groups = lanes / channels;
    static constexpr int sections = groups * vectors;
    static constexpr int longest = lag * (sections - 1); // from a sample's input to its output, in steps

    static void run(const BiquadSection* members, int memberCount, const double* const* rows, const float* const* in,
                    float* const* out, int count) noexcept {
        Wave wave(members, memberCount, rows, in, out, count);
        wave.pass();
        wave.storeMemory(members, memberCount);
    }

private:
    struct History {
        alignas(32) double x[vectors][lanes];
        alignas(32) double y[vectors][lanes];
    };

    Wave(const BiquadSection* members, int memberCount, const double* const* rows, const float* const* input,
         float* const* output, int samples) noexcept
        : count(samples) {
        for (int c = 0; c < channels; ++c) {
            in[c] = input[c];
            out[c] = output[c];
        }
        static constexpr double passing[2][rowLength] = {{1.0, 0.0, 0.0, 0.0, 0.0}, {0.0, 0.0, 1.0, 0.0, 1.0}};
        static constexpr double nothing[lanes] = {0.0, 0.0, 0.0, 0.0};
        for (int s = 0; s < sections; ++s) {
            const bool member = s < memberCount;
            const double* const row = member ? rows[s] : passing[Form::constants == Direct::constants ? 0 : 1];
            const int k = s % vectors;
            for (int c = 0; c < channels; ++c) {
                const int lane = s / vectors * channels + c;
                Form::derive(row, constant[k], lane);
                Form::enter(row, member ? members[s].memory[c] : nothing, entry1[k][lane], entry2[k][lane]);
                firstStep[k][lane] = static_cast<double>(lag * s);
            }
        }
    }

    void pass() noexcept {
        __m256d s1[vectors], s2[vectors];
        UNROLLED
        for (int k = 0; k < vectors; ++k) {
            s1[k] = _mm256_load_pd(entry1[k]);
            s2[k] = _mm256_load_pd(entry2[k]);
        }
        // line[parity][k]: what entered the line `lag` steps ago and now enters vector k; behind the last vector, the
        // way back to the later groups of vector 0.
        alignas(16) float line[lag][vectors + 1][lanes] = {};

        int t = 0;
        for (; t < longest; ++t)
            step<Edge::entry>(t, line[t % lag], s1, s2);
        static_assert(lag == 2 && longest % lag == 0, "the loop below begins with line 0");
        const int steady = count - lag;
        for (; t + 1 < steady; t += lag) {
            step<Edge::none>(t, line[0], s1, s2);
            step<Edge::none>(t + 1, line[1], s1, s2);
        }
        for (; t < count + longest; ++t)
            step<Edge::exit>(t, line[t % lag], s1, s2);

        UNROLLED
        for (int k = 0; k < vectors; ++k) {
            _mm256_store_pd(entry1[k], s1[k]);
            _mm256_store_pd(entry2[k], s2[k]);
        }
    }

    enum class Edge { none, entry, exit };

    // One step of all vectors. On the way in and out, a lane whose sample lies outside the run keeps its memory; on the
    // way out the last values are noted for the memory of each section.
    template <Edge edge>
    void step(int t, float (*line)[lanes], __m256d* s1, __m256d* s2) noexcept {
        const __m128 back = _mm_load_ps(line[vectors]);
        const bool open = edge != Edge::exit || t < count;
        __m128 entering;
        if constexpr (channels == 2) {
            __m128 pair = _mm_setzero_ps();
            if (open)
                pair = _mm_insert_ps(_mm_load_ss(in[0] + t), _mm_load_ss(in[1] + t), 0x10);
            entering = _mm_movelh_ps(pair, back);
        } else {
            const __m128 sample = open ? _mm_load_ss(in[0] + t) : _mm_setzero_ps();
            entering = _mm_move_ss(_mm_permute_ps(back, _MM_SHUFFLE(2, 1, 0, 0)), sample);
        }
        __m128 leaving = _mm_setzero_ps();
        // From the last vector to the first: each reads the line before the vector ahead of it writes there.
        UNROLLED
        for (int k = vectors - 1; k >= 0; --k) {
            const __m256d x = _mm256_cvtps_pd(k > 0 ? _mm_load_ps(line[k]) : entering);
            __m256d next1 = s1[k], next2 = s2[k];
            const __m256d y = Form::step(constant[k], x, next1, next2);
            if constexpr (edge != Edge::none) {
                const __m256d now = _mm256_sub_pd(_mm256_set1_pd(static_cast<double>(t)), _mm256_load_pd(firstStep[k]));
                const __m256d inside = edge == Edge::entry
                                           ? _mm256_cmp_pd(now, _mm256_setzero_pd(), _CMP_GE_OQ)
                                           : _mm256_cmp_pd(now, _mm256_set1_pd(static_cast<double>(count)), _CMP_LT_OQ);
                next1 = _mm256_blendv_pd(s1[k], next1, inside);
                next2 = _mm256_blendv_pd(s2[k], next2, inside);
            }
            if constexpr (edge == Edge::exit) {
                const int noted = t - (count - 2);
                if (noted >= 0) {
                    _mm256_store_pd(history[noted].x[k], x);
                    _mm256_store_pd(history[noted].y[k], y);
                }
            }
            s1[k] = next1;
            s2[k] = next2;
            const __m128 rounded = _mm256_cvtpd_ps(y);
            _mm_store_ps(line[k + 1], rounded);
            if (k == vectors - 1)
                leaving = rounded;
        }
        if constexpr (edge == Edge::entry)
            return;
        const int done = t - longest;
        if constexpr (channels == 2) {
            _mm_store_ss(out[0] + done, _mm_movehl_ps(leaving, leaving));
            _mm_store_ss(out[1] + done, _mm_permute_ps(leaving, _MM_SHUFFLE(3, 3, 3, 3)));
        } else {
            _mm_store_ss(out[0] + done, _mm_permute_ps(leaving, _MM_SHUFFLE(3, 3, 3, 3)));
        }
    }

    void storeMemory(const BiquadSection* members, int memberCount) const noexcept {
        for (int s = 0; s < memberCount; ++s) {
            const int k = s % vectors;
            for (int c = 0; c < channels; ++c) {
                const int lane = s / vectors * channels + c;
                const History& before = history[lag * s];
                const History& last = history[lag * s + 1];
                double* const memory = members[s].memory[c];
                memory[0] = last.x[k][lane];
                memory[1] = before.x[k][lane];
                Form::leave(memory, last.y[k][lane], before.y[k][lane], entry1[k][lane], entry2[k][lane]);
            }
        }
    }

    alignas(32) double constant[vectors][Form::constants][lanes];
    alignas(32) double entry1[vectors][lanes];
    alignas(32) double entry2[vectors][lanes];
    alignas(32) double firstStep[vectors][lanes]; // of each lane's section
    const float* in[channels];
    float* out[channels];
    int count;
    History history[longest + 2]; // of the steps from count - 2
};

// One section over all runs of a pass: where no other section can fill the wait, the way from one output to the next
// has to be short.
struct DirectSection {
    static void run(const BiquadPass& pass, const BiquadSection& section, const float* in0, const float* in1,
                    float* out0, float* out1) noexcept {
        const bool pair = in1 != nullptr;
        const double* const memory0 = section.memory[0];
        const double* const memory1 = pair ? section.memory[1] : memory0;
        const auto both = [&](int i) { return _mm_set_pd(memory1[i], memory0[i]); };
        __m128d x1 = both(0), x2 = both(1), y1 = both(2), y2 = both(3);
        const double* row = section.row;
        for (std::size_t r = 0; r < pass.runCount; ++r, row += pass.rowStride) {
            const __m128d b0 = _mm_set1_pd(row[0]), b1 = _mm_set1_pd(row[1]), b2 = _mm_set1_pd(row[2]);
            const __m128d a1 = _mm_set1_pd(row[3]), a2 = _mm_set1_pd(row[4]);
            const std::size_t length = pass.runLengths[r];
            const auto next = [&](__m128 sample) {
                const __m128d x = _mm_cvtps_pd(sample);
                const __m128d inputs = _mm_fmadd_pd(b0, x, _mm_fmadd_pd(b1, x1, _mm_mul_pd(b2, x2)));
                const __m128d y = _mm_fnmadd_pd(a1, y1, _mm_fnmadd_pd(a2, y2, inputs));
                x2 = x1;
                x1 = x;
                y2 = y1;
                y1 = y;
                return _mm_cvtpd_ps(y);
            };
            if (pair) {
                for (std::size_t i = 0; i < length; ++i) {
                    const __m128 y = next(_mm_insert_ps(_mm_load_ss(in0 + i), _mm_load_ss(in1 + i), 0x10));
                    _mm_store_ss(out0 + i, y);
                    _mm_store_ss(out1 + i, _mm_movehdup_ps(y));
                }
                in1 += length;
                out1 += length;
            } else {
                for (std::size_t i = 0; i < length; ++i)
                    _mm_store_ss(out0 + i, next(_mm_load_ss(in0 + i)));
            }
            in0 += length;
            out0 += length;
        }
        store(section.memory[0], _mm_unpacklo_pd(x1, x2), _mm_unpacklo_pd(y1, y2));
        if (pair)
            store(section.memory[1], _mm_unpackhi_pd(x1, x2), _mm_unpackhi_pd(y1, y2));
    }

    static void store(double* memory, __m128d inputs, __m128d rest) noexcept {
        _mm_storeu_pd(memory, inputs);
        _mm_storeu_pd(memory + 2, rest);
    }
};

struct StateVariableSection {
    static void run(const BiquadPass& pass, const BiquadSection& section, const float* in0, const float* in1,
                    float* out0, float* out1) noexcept {
        const bool pair = in1 != nullptr;
        const double* const memory0 = section.memory[0];
        const double* const memory1 = pair ? section.memory[1] : memory0;
        const auto both = [&](int i) { return _mm_set_pd(memory1[i], memory0[i]); };
        __m128d x1 = both(0), x2 = both(1), s1 = both(2), s2 = both(3);
        const double* row = section.row;
        for (std::size_t r = 0; r < pass.runCount; ++r, row += pass.rowStride) {
            double constant[StateVariable::constants][lanes];
            StateVariable::derive(row, constant, 0);
            const __m128d damping = _mm_set1_pd(constant[0][0]), h1 = _mm_set1_pd(constant[1][0]),
                          h2 = _mm_set1_pd(constant[2][0]), twoG = _mm_set1_pd(constant[3][0]),
                          outH = _mm_set1_pd(constant[4][0]), out1State = _mm_set1_pd(constant[5][0]),
                          out2State = _mm_set1_pd(constant[6][0]);
            const std::size_t length = pass.runLengths[r];
            const auto next = [&](__m128 sample) {
                const __m128d x = _mm_cvtps_pd(sample);
                const __m128d h = _mm_fnmadd_pd(damping, s1, _mm_sub_pd(x, s2));
                const __m128d past = _mm_fmadd_pd(out1State, s1, _mm_mul_pd(out2State, s2));
                s2 = _mm_fmadd_pd(h2, h, _mm_fmadd_pd(twoG, s1, s2));
                s1 = _mm_fmadd_pd(h1, h, s1);
                x2 = x1;
                x1 = x;
                return _mm_cvtpd_ps(_mm_fmadd_pd(outH, h, past));
            };
            if (pair) {
                for (std::size_t i = 0; i < length; ++i) {
                    const __m128 y = next(_mm_insert_ps(_mm_load_ss(in0 + i), _mm_load_ss(in1 + i), 0x10));
                    _mm_store_ss(out0 + i, y);
                    _mm_store_ss(out1 + i, _mm_movehdup_ps(y));
                }
                in1 += length;
                out1 += length;
            } else {
                for (std::size_t i = 0; i < length; ++i)
                    _mm_store_ss(out0 + i, next(_mm_load_ss(in0 + i)));
            }
            in0 += length;
            out0 += length;
        }
        DirectSection::store(section.memory[0], _mm_unpacklo_pd(x1, x2), _mm_unpacklo_pd(s1, s2));
        if (pair)
            DirectSection::store(section.memory[1], _mm_unpackhi_pd(x1, x2), _mm_unpackhi_pd(s1, s2));
    }
};

// fewest: sections from which on a wave is faster than one section after the other, for one channel and for two.
struct DirectKernels {
    using Form = Direct;
    using Section = DirectSection;
    static constexpr int fewest[2] = {4, 3};
};

struct StateVariableKernels {
    using Form = StateVariable;
    using Section = StateVariableSection;
    static constexpr int fewest[2] = {2, 2};
};

template <class Kernels, int channels>
void runInWaves(const BiquadPass& pass, int members, const BiquadSection* sections, std::size_t run,
                const float* const* in, float* const* out, int count) noexcept {
    using Form = typename Kernels::Form;
    const double* rows[largestWave];
    for (int s = 0; s < members; ++s)
        rows[s] = sections[s].row + run * pass.rowStride;
    constexpr int groups = lanes / channels;
    if (members <= groups)
        Wave<Form, channels, 1>::run(sections, members, rows, in, out, count);
    else if (members <= 2 * groups)
        Wave<Form, channels, 2>::run(sections, members, rows, in, out, count);
    else if constexpr (channels == 2) {
        if (members <= 3 * groups)
            Wave<Form, channels, 3>::run(sections, members, rows, in, out, count);
        else
            Wave<Form, channels, 4>::run(sections, members, rows, in, out, count);
    }
}

template <class Kernels, int channels>
void runWide(const BiquadPass& pass) noexcept {
    std::size_t shortestRun = static_cast<std::size_t>(-1);
    for (std::size_t r = 0; r < pass.runCount; ++r) {
        const std::size_t length = pass.runLengths[r];
        shortestRun = length < shortestRun ? length : shortestRun;
    }
    const bool waves = shortestRun >= static_cast<std::size_t>(shortestWave);
    const float* in[2] = {pass.input[0], channels == 2 ? pass.input[1] : nullptr};
    float* const out[2] = {pass.output[0], channels == 2 ? pass.output[1] : nullptr};

    for (std::size_t s = 0; s < pass.sectionCount;) {
        const std::size_t left = pass.sectionCount - s;
        const int members = static_cast<int>(left < largestWave ? left : largestWave);
        if (waves && members >= Kernels::fewest[channels - 1]) {
            std::size_t position = 0;
            for (std::size_t r = 0; r < pass.runCount; ++r) {
                const std::size_t length = pass.runLengths[r];
                const float* const from[2] = {in[0] + position, channels == 2 ? in[1] + position : nullptr};
                float* const to[2] = {out[0] + position, channels == 2 ? out[1] + position : nullptr};
                runInWaves<Kernels, channels>(pass, members, pass.sections + s, r, from, to, static_cast<int>(length));
                position += length;
            }
            s += static_cast<std::size_t>(members);
        } else {
            Kernels::Section::run(pass, pass.sections[s], in[0], in[1], out[0], out[1]);
            ++s;
        }
        in[0] = out[0];
        in[1] = out[1];
    }
    _mm256_zeroupper(); // the compiler has been seen to forget it, and all code behind then runs at half speed
}

constexpr BiquadKernels wide = {{runWide<DirectKernels, 1>, runWide<DirectKernels, 2>},
                                {runWide<StateVariableKernels, 1>, runWide<StateVariableKernels, 2>}};

} // namespace

const BiquadKernels* wideBiquadKernels() noexcept REALTIME {
    return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma") ? &wide : nullptr;
}

#else

const BiquadKernels* wideBiquadKernels() noexcept REALTIME {
    return nullptr;
}

#endif
