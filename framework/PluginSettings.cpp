#include "framework/PluginSettings.h"

#include "framework/GenericPlugin.h"

#include <algorithm>

namespace {

constexpr std::int32_t widest = 16000; // interface pixels
constexpr std::int32_t highest = 12000;

GenericPlugin::InterfaceSize smallestSize(const GenericPlugin& plugin) {
    GenericPlugin::InterfaceSize size;
    plugin.constrainSize(size.width, size.height);
    return size;
}

std::int32_t lastRow(const GenericPlugin& plugin) {
    return std::max(static_cast<std::int32_t>(plugin.interfaceSizes().size()) - 1, std::int32_t{0});
}

// Below 100 the value is a switch, from there on a percentage.
float scaleOf(std::int32_t retina) {
    if (retina >= 100)
        return static_cast<float>(retina) / 100.0f;
    return retina == 1 ? 0.0f : 1.0f;
}

} // namespace

PluginSettings::PluginSettings(GenericPlugin& plugin)
    : SettingsBase(plugin.info.version())
    , interfaceLayout(this, "InterfaceLayout", std::min(std::int32_t{2}, lastRow(plugin)), plugin.canResize() ? -1 : 0,
                      lastRow(plugin))
    , interfacePanels(this, "InterfacePanels", 0, 0, 1 << plugin.panelCount())
    , interfaceWidth(this, "InterfaceWidth", smallestSize(plugin).width, smallestSize(plugin).width, widest)
    , interfaceHeight(this, "InterfaceHeight", smallestSize(plugin).height, smallestSize(plugin).height, highest)
    , hasChoice(plugin.interfaceSizes().size() > 1 || plugin.canResize())
    , hasPanels(plugin.panelCount() > 0)
    , isFree(plugin.canResize()) {}

void PluginSettings::serialize(SettingSerializer& serializer) {
    SettingsBase::serialize(serializer);
    if (hasChoice)
        interfaceLayout.serialize(serializer);
    if (hasPanels)
        interfacePanels.serialize(serializer);
    if (isFree) {
        interfaceWidth.serialize(serializer);
        interfaceHeight.serialize(serializer);
    }
    scalingAdjustments.serialize(serializer);
}

void SharedPluginSettings::serialize(SettingSerializer& serializer) {
    SettingsBase::serialize(serializer);
    enableProgramChanges.serialize(serializer);
    graphicsAcceleration.serialize(serializer);
    retinaEnabled.serialize(serializer);
    showInteractiveHelp.serialize(serializer);
    showWelcomeHint.serialize(serializer);
    showComponentDisplays.serialize(serializer);
    presetBrowserTypeToSearch.serialize(serializer);
}

void SharedPluginSettings::chooseGraphics(std::int32_t makersAcceleration, std::int32_t makersScale) {
    mode = makersAcceleration != absent ? makersAcceleration : graphicsAcceleration.get();
    scale = scaleOf(makersScale != absent ? std::clamp(makersScale, 0, 300) : retinaEnabled.get());
}
