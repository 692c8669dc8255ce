// Envelopes by groups of 4 samples. Step by step each sample waits for the one before it; here the part of a group that
// does not know the level at its begin is summed up first, and the level goes through once a group.
//
// This file alone is compiled for AVX2 and FMA. It includes nothing that defines inline functions which other files
// could share: the linker would keep one copy, and it might be this one.
#include "eq/FollowerKernels.h"

#if defined(__AVX2__) && defined(__FMA__)

#include <immintrin.h>

namespace {

constexpr std::int32_t lanes = 4;

__m256d load(const float* in) noexcept {
    return _mm256_cvtps_pd(_mm_loadu_ps(in));
}

void store(float* out, __m256d values) noexcept {
    _mm_storeu_ps(out, _mm256_cvtpd_ps(values));
}

__m256d last(__m256d values) noexcept {
    return _mm256_permute4x64_pd(values, 0xFF);
}

// Later by one sample or two; what comes in is `first`.
__m256d later1(__m256d values, __m256d first) noexcept {
    return _mm256_blend_pd(_mm256_permute4x64_pd(values, 0x90), first, 1);
}

__m256d later2(__m256d values, __m256d first) noexcept {
    return _mm256_permute2f128_pd(values, first, 0x02);
}

// One direction: y' = keep y + step x.
struct Direction {
    __m256d step;
    __m256d keep;
    __m256d keep2;  // to the power of 2
    __m256d powers; // 1 to 4, of the level at the begin of a group
    __m256d keep4;

    explicit Direction(double share) noexcept {
        const double k = 1.0 - share;
        step = _mm256_set1_pd(share);
        keep = _mm256_set1_pd(k);
        keep2 = _mm256_set1_pd(k * k);
        powers = _mm256_set_pd(k * k * (k * k), k * k * k, k * k, k);
        keep4 = last(powers);
    }

    // What the samples up to each add to keep^n times the level.
    __m256d sums(__m256d x) const noexcept {
        const __m256d none = _mm256_setzero_pd();
        const __m256d own = _mm256_mul_pd(step, x);
        const __m256d pairs = _mm256_fmadd_pd(keep, later1(own, none), own);
        return _mm256_fmadd_pd(keep2, later2(pairs, none), pairs);
    }
};

double followSingle(const FollowerSteps& steps, double level, const float* in, float* out,
                    std::int32_t count) noexcept {
    for (std::int32_t i = 0; i < count; ++i) {
        const double distance = static_cast<double>(in[i]) - level;
        level += (distance > 0.0 ? steps.rise : steps.fall) * distance;
        out[i] = static_cast<float>(level);
    }
    return level;
}

// Up at once: y' = max(x, keep y + step x). Such steps in a row are one of the same kind, so a group is
// max(peak, keep^n y + sum), whatever its samples do.
double followPeaks(const FollowerSteps& steps, double level, const float* in, float* out, std::int32_t count) noexcept {
    const Direction down(steps.fall);
    const __m256d none = _mm256_setzero_pd();
    const __m256d lowest = _mm256_set1_pd(-1e300); // below all peaks, and still a number times 0
    __m256d y = _mm256_set1_pd(level);
    std::int32_t i = 0;
    for (; i + lanes <= count; i += lanes) {
        const __m256d x = load(in + i);
        const __m256d own = _mm256_mul_pd(down.step, x);
        const __m256d peaks = _mm256_max_pd(x, _mm256_fmadd_pd(down.keep, later1(x, lowest), own));
        const __m256d pairs = _mm256_fmadd_pd(down.keep, later1(own, none), own);
        const __m256d peak = _mm256_max_pd(peaks, _mm256_fmadd_pd(down.keep2, later2(peaks, lowest), pairs));
        const __m256d sum = _mm256_fmadd_pd(down.keep2, later2(pairs, none), pairs);
        store(out + i, _mm256_max_pd(peak, _mm256_fmadd_pd(down.powers, y, sum)));
        y = _mm256_max_pd(last(peak), _mm256_fmadd_pd(down.keep4, y, last(sum)));
    }
    return followSingle(steps, _mm256_cvtsd_f64(y), in + i, out + i, count - i);
}

// Both ways take time. A group is taken to go on in the direction of the one before it; where a sample shows that it
// did not, it is done again step by step. An envelope turns seldom: it takes in what has been smoothed before.
double followBothWays(const FollowerSteps& steps, double level, const float* in, float* out,
                      std::int32_t count) noexcept {
    const Direction directions[2] = {Direction(steps.fall), Direction(steps.rise)};
    constexpr int allRise = 0xF;
    int rising = count > 0 && static_cast<double>(in[0]) > level ? 1 : 0;
    __m256d y = _mm256_set1_pd(level);
    std::int32_t i = 0;
    while (i + lanes <= count) {
        const Direction way = directions[rising];
        const int wanted = rising != 0 ? allRise : 0;
        bool turned = false;
        for (; i + lanes <= count; i += lanes) {
            const __m256d x = load(in + i);
            const __m256d sum = way.sums(x);
            const __m256d levels = _mm256_fmadd_pd(way.powers, y, sum);
            turned = _mm256_movemask_pd(_mm256_cmp_pd(x, later1(levels, y), _CMP_GT_OQ)) != wanted;
            if (turned)
                break;
            store(out + i, levels);
            y = _mm256_fmadd_pd(way.keep4, y, last(sum));
        }
        if (turned) {
            const float end = in[i + lanes - 1]; // read first: `out` may be the input
            const double reached = followSingle(steps, _mm256_cvtsd_f64(y), in + i, out + i, lanes);
            rising = static_cast<double>(end) > reached ? 1 : 0;
            y = _mm256_set1_pd(reached);
            i += lanes;
        }
    }
    return followSingle(steps, _mm256_cvtsd_f64(y), in + i, out + i, count - i);
}

double followWide(const FollowerSteps& steps, double level, const float* in, float* out, std::int32_t count) noexcept {
    const double reached = (steps.rise == 1.0 ? followPeaks : followBothWays)(steps, level, in, out, count);
    _mm256_zeroupper();
    return reached;
}

} // namespace

FollowerKernel wideFollowerKernel() noexcept REALTIME {
    return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma") ? followWide : nullptr;
}

#else

FollowerKernel wideFollowerKernel() noexcept REALTIME {
    return nullptr;
}

#endif
