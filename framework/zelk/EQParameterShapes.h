// The laws between stored values and meanings that belong to single parameters of the product.
// Threads: the settings belong to construction, the laws to any.
#pragma once

#include "framework/FloatPluginParameter.h"
#include "framework/FloatPluginParameterUnit.h"

#include <string>
#include <string_view>

// Levels up to 0 dB, the top of which means that the band finds its threshold itself.
class ThresholdParameterUnit final : public DBParameterUnitBase {
public:
    static constexpr double autoAbove = -0.1; // dB

    constexpr ThresholdParameterUnit() noexcept : DBParameterUnitBase("dB") {}

    [[nodiscard]] bool format(double unit, std::string& text) const override;
    [[nodiscard]] bool parseSpecial(std::string_view text, double& unit) const override;
};

inline constexpr ThresholdParameterUnit thresholdUnit;

// Each after setRange.
void shapeAsQ(FloatPluginParameter& parameter);           // display and unit value: Q, 0.025 to 40
void shapeAsThreshold(FloatPluginParameter& parameter);   // display and unit value: dB, -90 to 0
void shapeAsOutputLevel(FloatPluginParameter& parameter); // display value: linear gain, unit value: dB
void shapeAsGainScale(FloatPluginParameter& parameter);   // display value: factor, unit value: percent
