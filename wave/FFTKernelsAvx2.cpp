// The transform's inner loops on 8 lanes. Compiled for AVX2 and FMA on x86-64; elsewhere there is no such table.
#include "wave/FFTKernels.h"

#if defined(__AVX2__) && defined(__FMA__)

#include "wave/FFTPasses.h"

#include <immintrin.h>

namespace {

struct ThisFile {};
using Single = FFTSingle<ThisFile>;

struct Four {
    using Vector = __m128;
    static constexpr std::int32_t lanes = 4;

    static Vector load(const float* from) noexcept { return _mm_loadu_ps(from); }
    static Vector broadcast(float value) noexcept { return _mm_set1_ps(value); }
    static void loadPairs(const float* from, Vector& first, Vector& second) noexcept {
        const Vector low = _mm_loadu_ps(from);
        const Vector high = _mm_loadu_ps(from + 4);
        first = _mm_shuffle_ps(low, high, 0x88);
        second = _mm_shuffle_ps(low, high, 0xDD);
    }
    static void storeRows(float* to, Vector a, Vector b, Vector c, Vector d, Vector e, Vector f, Vector g,
                          Vector h) noexcept {
        _MM_TRANSPOSE4_PS(a, b, c, d);
        _MM_TRANSPOSE4_PS(e, f, g, h);
        const Vector rows[8] = {a, e, b, f, c, g, d, h};
        for (int index = 0; index < 8; ++index)
            _mm_storeu_ps(to + 4 * index, rows[index]);
    }
};

struct Eight {
    using Vector = __m256;
    static constexpr std::int32_t lanes = 8;

    static Vector reversed(Vector value) noexcept {
        return _mm256_permutevar8x32_ps(value, _mm256_setr_epi32(7, 6, 5, 4, 3, 2, 1, 0));
    }
    static Vector inOrder(Vector value) noexcept { // from the order that a shuffle of two halves leaves
        return _mm256_castpd_ps(_mm256_permute4x64_pd(_mm256_castps_pd(value), 0xD8));
    }

    static Vector load(const float* from) noexcept { return _mm256_loadu_ps(from); }
    static Vector loadReversed(const float* from) noexcept { return reversed(load(from)); }
    static Vector broadcast(float value) noexcept { return _mm256_set1_ps(value); }
    static void loadPairs(const float* from, Vector& first, Vector& second) noexcept {
        const Vector low = load(from);
        const Vector high = load(from + 8);
        first = inOrder(_mm256_shuffle_ps(low, high, 0x88));
        second = inOrder(_mm256_shuffle_ps(low, high, 0xDD));
    }
    static void store(float* to, Vector value) noexcept { _mm256_storeu_ps(to, value); }
    static void storeReversed(float* to, Vector value) noexcept { store(to, reversed(value)); }
    static void storePairs(float* to, Vector first, Vector second) noexcept {
        const Vector low = _mm256_unpacklo_ps(first, second);
        const Vector high = _mm256_unpackhi_ps(first, second);
        store(to, _mm256_permute2f128_ps(low, high, 0x20));
        store(to + 8, _mm256_permute2f128_ps(low, high, 0x31));
    }
    static void storeRows(float* to, Vector a, Vector b, Vector c, Vector d, Vector e, Vector f, Vector g,
                          Vector h) noexcept {
        const Vector ab[2] = {_mm256_unpacklo_ps(a, b), _mm256_unpackhi_ps(a, b)};
        const Vector cd[2] = {_mm256_unpacklo_ps(c, d), _mm256_unpackhi_ps(c, d)};
        const Vector ef[2] = {_mm256_unpacklo_ps(e, f), _mm256_unpackhi_ps(e, f)};
        const Vector gh[2] = {_mm256_unpacklo_ps(g, h), _mm256_unpackhi_ps(g, h)};
        for (int index = 0; index < 2; ++index) {
            const Vector left[2] = {_mm256_shuffle_ps(ab[index], cd[index], 0x44),
                                    _mm256_shuffle_ps(ab[index], cd[index], 0xEE)};
            const Vector right[2] = {_mm256_shuffle_ps(ef[index], gh[index], 0x44),
                                     _mm256_shuffle_ps(ef[index], gh[index], 0xEE)};
            for (int half = 0; half < 2; ++half) {
                float* row = to + 8 * (2 * index + half);
                store(row, _mm256_permute2f128_ps(left[half], right[half], 0x20));
                store(row + 32, _mm256_permute2f128_ps(left[half], right[half], 0x31));
            }
        }
    }
};

} // namespace

constinit const FFTKernels* const FFTKernels::wide = &FFTKernelFunctions<Eight, Four, Single>::table;

#else

constinit const FFTKernels* const FFTKernels::wide = nullptr;

#endif
