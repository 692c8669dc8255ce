#include "wave/SoundCopy.h"

#include <cmath>

namespace wave {

namespace {

SoundCopy::Function* fastest() noexcept {
    if (SoundCopy::Function* const avx2 = SoundCopy::avx2(); avx2 != nullptr)
        return avx2;
    return SoundCopy::plain;
}

SoundCopy::Function* const chosenAtLoad = fastest();

} // namespace

void SoundCopy::plain(const float* in, std::int32_t count, float* out) noexcept REALTIME {
    for (std::int32_t index = 0; index < count; ++index)
        out[index] = std::fabs(in[index]) <= loudest ? in[index] : 0.0f;
}

SoundCopy::Function* SoundCopy::avx2() noexcept REALTIME {
#if defined(__x86_64__)
    return __builtin_cpu_supports("avx2") ? wide : nullptr;
#else
    return nullptr;
#endif
}

void copySound(const float* in, std::int32_t count, float* out) noexcept REALTIME {
    trustedRealtime([=] { chosenAtLoad(in, count, out); });
}

} // namespace wave
