// The copy on 8 lanes. Compiled for AVX2 on x86-64; elsewhere there is none.
#include "wave/SoundCopy.h"

#if defined(__AVX2__)

#include <immintrin.h>

namespace wave {

namespace {

__m256 soundOf(__m256 samples) noexcept {
    const __m256 magnitudes = _mm256_andnot_ps(_mm256_set1_ps(-0.0f), samples);
    return _mm256_and_ps(samples, _mm256_cmp_ps(magnitudes, _mm256_set1_ps(loudest), _CMP_LE_OQ));
}

void copyWide(const float* in, std::int32_t count, float* out) noexcept {
    std::int32_t index = 0;
    for (; index + 8 <= count; index += 8)
        _mm256_storeu_ps(out + index, soundOf(_mm256_loadu_ps(in + index)));
    // The last ones go over the stack: nothing behind the end is read or written.
    if (index < count) {
        float rest[8]{};
        for (std::int32_t i = index; i < count; ++i)
            rest[i - index] = in[i];
        _mm256_storeu_ps(rest, soundOf(_mm256_loadu_ps(rest)));
        for (std::int32_t i = index; i < count; ++i)
            out[i] = rest[i - index];
    }
    _mm256_zeroupper();
}

} // namespace

SoundCopy::Function* const SoundCopy::wide = copyWide;

} // namespace wave

#else

wave::SoundCopy::Function* const wave::SoundCopy::wide = nullptr;

#endif
