// A continuous parameter.
// Threads: as tagged in the base; the settings belong to construction.
#pragma once

#include "base/Realtime.h"
#include "framework/ParameterTextFormat.h"
#include "framework/TypedPluginParameter.h"

#include <cstdint>
#include <string>
#include <string_view>

class FloatPluginParameterUnit;

class FloatPluginParameter : public TypedPluginParameter<float> {
public:
    FloatPluginParameter(GenericParameterOwner* listener, std::string_view literal);

    // Settings.
    void setRange(float lowest, float highest, float standard); // the value becomes the standard, nobody is told
    void setUnit(const FloatPluginParameterUnit& wanted);       // a process-wide constant
    void setLinearDisplay() noexcept;                           // the display runs from -90 to 0 over the range
    ParameterTextFormat& format() noexcept { return textFormat; }
    const ParameterTextFormat& format() const noexcept { return textFormat; }

    float valueFromUnit(double unit) const noexcept REALTIME override;
    float valueFromDisplay(double display) const noexcept REALTIME override;
    double unitFromValue(float value) const noexcept REALTIME override;
    double displayFromValue(float value) const noexcept REALTIME override;
    double normalize(float value) const noexcept REALTIME override;
    float denormalize(double normalized) const noexcept REALTIME override;
    double normalizeForVersion(float value, std::int32_t version) const noexcept override;
    [[nodiscard]] bool denormalizeForVersion(double normalized, std::int32_t version,
                                             float& value) const noexcept override;
    std::int32_t limitForVersion(std::int32_t version) const noexcept override;

    [[nodiscard]] bool parseText(std::string_view text, float& value) const override;
    std::string shortText(float value, std::size_t maxLength) const override;
    std::string text(float value) const override;

    float defaultValue() const noexcept REALTIME override { return standardValue; }
    float maximum() const noexcept REALTIME override { return highestValue; }
    float minimum() const noexcept REALTIME override { return lowestValue; }
    float value() const noexcept REALTIME override { return get(); }
    void setValue(float wanted, std::uint32_t flags) noexcept override;
    void notifyListeners(float changed) noexcept override;

private:
    bool parse(std::string_view text, float& result) const;
    bool parseSpecial(std::string_view text, float& result) const;
    float limited(float value) const noexcept REALTIME;

    ParameterTextFormat textFormat;
    const FloatPluginParameterUnit* unit = nullptr; // process-wide; null: none
    float lowestValue = 0.0f;
    float highestValue = 1.0f;
    float standardValue = 0.0f;
};
