// Balance between two channels, from -1 to 1: each side of the centre attenuates the other channel.
// Threads: as its base.
#pragma once

#include "framework/FloatPluginParameter.h"

#include <string>
#include <string_view>

class StereoPanParameter final : public FloatPluginParameter {
public:
    using FloatPluginParameter::FloatPluginParameter;

    // The parameter whose value 1 says that the channels are mid and side. Not owned; null: always left and right.
    void setChannelMode(const AbstractPluginParameter* wanted) noexcept { channelMode = wanted; }

    // Both attenuations ("-3 / 0", with or without names and "dB"), one of them behind its channel's name, or the name
    // of the only channel that stays. Else a plain value or percentage.
    [[nodiscard]] bool parseText(std::string_view text, float& value) const override;
    std::string shortText(float value, std::size_t maxLength) const override;
    std::string text(float value) const override;

private:
    bool isMidSide() const noexcept;

    const AbstractPluginParameter* channelMode = nullptr;
};
