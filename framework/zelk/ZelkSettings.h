// What the product adds to the settings.
// Threads: main.
#pragma once

#include "framework/PluginSettings.h"

class ZelkSettings final : public PluginSettings {
public:
    using PluginSettings::PluginSettings;

    void serialize(SettingSerializer& serializer) override;

    Setting<bool> gainQInteraction{this, "GainQInteraction", false};
    Setting<bool> pianoRoll{this, "PianoRoll", false};
    Setting<bool> showOutputLevelMeter{this, "ShowOutputLevelMeter", true};
};

class ZelkSharedSettings final : public SharedPluginSettings {
public:
    using SharedPluginSettings::SharedPluginSettings;

    void serialize(SettingSerializer& serializer) override;

    Setting<bool> autoAdjustDisplayRange{this, "AutoAdjustDisplayRange", true};
    Setting<bool> showMouseFrequency{this, "ShowMouseFrequency", true};
    Setting<bool> useAccessibleColors{this, "UseAccessibleColors", false};
};
