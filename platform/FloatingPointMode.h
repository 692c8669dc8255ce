// The floating-point state of the audio thread: denormals count as zero and become zero.
// Threads: sets that of the calling thread.
#pragma once

#include "base/Realtime.h"

#if defined(__x86_64__) || defined(_M_X64)
#include <xmmintrin.h>
#endif

inline constexpr unsigned audioControlWord = 0x9FC0; // MXCSR: flush to zero, denormals are zero, all masked, to nearest

inline void setAudioFloatingPointMode() noexcept REALTIME {
#if defined(__x86_64__) || defined(_M_X64)
    _mm_setcsr(audioControlWord);
#elif defined(__aarch64__)
    unsigned long long control = 0;
    __asm__ __volatile__("mrs %0, fpcr" : "=r"(control));
    control |= 1ull << 24; // FZ
    __asm__ __volatile__("msr fpcr, %0" : : "r"(control));
#endif
}
