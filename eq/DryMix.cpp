#include "eq/DryMix.h"

void mixWithDry(const DrySignal& dry, float* filtered, std::int32_t count, double share,
                double step) noexcept REALTIME {
    if (share == 1.0 && step == 0.0)
        return;
    for (std::int32_t i = 0; i < count; ++i) {
        const double from = dry.at(i);
        const double now = share + static_cast<double>(i) * step;
        filtered[i] = static_cast<float>(from + (static_cast<double>(filtered[i]) - from) * now);
    }
}
