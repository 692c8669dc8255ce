// The steps in which the interface is scaled, and a user's corrections of them as the setting of that name holds them.
// Threads: any.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

inline constexpr std::array<float, 8> scaleSteps{1.0f, 1.25f, 1.5f, 1.75f, 2.0f, 2.25f, 2.5f, 3.0f};

std::size_t scaleStepOf(float factor) noexcept; // index of the step that stands for a factor

// For each step the factor that is used in its place.
struct ScalingAdjustments {
    std::array<float, 8> backing = scaleSteps; // of a window's backing scale
    std::array<float, 8> toolkit = scaleSteps; // of the toolkit

    // "125:100,F150:125" in percents, an "F" for the toolkit. Reading ends at the first piece that is no such pair;
    // what was read until then stands.
    static ScalingAdjustments fromText(std::string_view text) noexcept;
};
