// A value from a file on its way into a parameter.
// Threads: main.
#pragma once

#include "framework/AbstractPluginParameter.h"

#include <cmath>
#include <cstdint>

// What is no number becomes the default.
inline void setStoredValue(AbstractPluginParameter& parameter, float stored, std::uint32_t flags) noexcept {
    parameter.setValue(std::isfinite(stored) ? stored : parameter.defaultValue(), flags);
}
