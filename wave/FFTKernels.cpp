#include "wave/FFTKernels.h"

#include "wave/FFTPasses.h"

namespace {

struct ThisFile {};
using Single = FFTSingle<ThisFile>;

const FFTKernels& chosenAtLoad = FFTKernels::avx2() != nullptr ? *FFTKernels::avx2() : FFTKernels::plain();

} // namespace

const FFTKernels& FFTKernels::plain() noexcept REALTIME {
    return FFTKernelFunctions<Single, Single, Single>::table;
}

const FFTKernels* FFTKernels::avx2() noexcept REALTIME {
#if defined(__x86_64__)
    return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma") ? wide : nullptr;
#else
    return nullptr;
#endif
}

const FFTKernels& FFTKernels::fastest() noexcept REALTIME {
    return chosenAtLoad;
}
