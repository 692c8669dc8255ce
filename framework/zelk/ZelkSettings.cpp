#include "framework/zelk/ZelkSettings.h"

void ZelkSettings::serialize(SettingSerializer& serializer) {
    PluginSettings::serialize(serializer);
    gainQInteraction.serialize(serializer);
    pianoRoll.serialize(serializer);
    showOutputLevelMeter.serialize(serializer);
}

void ZelkSharedSettings::serialize(SettingSerializer& serializer) {
    SharedPluginSettings::serialize(serializer);
    autoAdjustDisplayRange.serialize(serializer);
    showMouseFrequency.serialize(serializer);
    useAccessibleColors.serialize(serializer);
}
