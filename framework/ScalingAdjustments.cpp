#include "framework/ScalingAdjustments.h"

#include <charconv>

namespace {

bool takeFactor(std::string_view& text, float& factor) noexcept {
    int percent = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), percent);
    if (error != std::errc())
        return false;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    factor = static_cast<float>(percent) / 100.0f;
    return true;
}

bool takeCharacter(std::string_view& text, char wanted) noexcept {
    if (!text.starts_with(wanted))
        return false;
    text.remove_prefix(1);
    return true;
}

} // namespace

std::size_t scaleStepOf(float factor) noexcept {
    constexpr std::array<float, 7> above{1.2f, 1.4f, 1.6f, 1.8f, 2.2f, 2.4f, 2.6f};
    std::size_t step = 0;
    while (step < above.size() && factor > above[step])
        ++step;
    return step;
}

ScalingAdjustments ScalingAdjustments::fromText(std::string_view text) noexcept {
    ScalingAdjustments adjustments;
    do {
        const bool isToolkit = takeCharacter(text, 'F');
        float from = 0.0f;
        float to = 0.0f;
        if (!takeFactor(text, from) || !takeCharacter(text, ':') || !takeFactor(text, to))
            break;
        (isToolkit ? adjustments.toolkit : adjustments.backing)[scaleStepOf(from)] = scaleSteps[scaleStepOf(to)];
    } while (takeCharacter(text, ','));
    return adjustments;
}
