// The settings of an instance and those of the process, whatever the product.
// Threads: main.
#pragma once

#include "framework/SettingsBase.h"

#include <cstdint>
#include <string>

class GenericPlugin;

// One object in each instance. All instances write to the same place: the last write stands, and the next new instance
// reads that.
class PluginSettings : public SettingsBase {
public:
    explicit PluginSettings(GenericPlugin& plugin); // its sizes and panels set the limits

    void serialize(SettingSerializer& serializer) override;

    Setting<std::int32_t> interfaceLayout; // row of the table of sizes, -1: a free size
    Setting<std::int32_t> interfacePanels; // one bit a side panel
    Setting<std::int32_t> interfaceWidth;  // of the free size
    Setting<std::int32_t> interfaceHeight;
    Setting<std::string> scalingAdjustments{this, "ScalingAdjustments", ""}; // as in 125:100,F150:125, percents

private:
    const bool hasChoice; // of sizes
    const bool hasPanels;
    const bool isFree; // the window can be resized
};

// One object in the process.
class SharedPluginSettings : public SettingsBase {
public:
    explicit SharedPluginSettings(const VersionInfo& whose) : SettingsBase(whose) {}

    void serialize(SettingSerializer& serializer) override;

    // Works out what counts for drawing: the maker's own values, where they are not absent, go over those of the
    // product.
    void chooseGraphics(std::int32_t makersAcceleration, std::int32_t makersScale);
    std::int32_t graphicsMode() const noexcept { return mode; } // 0: no acceleration
    float fixedScale() const noexcept { return scale; }         // 0: none, windows follow the system and the host

    static constexpr std::int32_t absent = -1;

    Setting<bool> enableProgramChanges{this, "EnableMIDIProgramChanges", false}; // MIDI loads presets
    Setting<std::int32_t> graphicsAcceleration{this, "GraphicsAcceleration", 1};
    Setting<std::int32_t> retinaEnabled{this, "RetinaEnabled", 1, 0, 300};
    Setting<bool> showInteractiveHelp{this, "showInteractiveHelp", true};
    Setting<bool> showWelcomeHint{this, "showWelcomeHint", false};
    Setting<bool> showComponentDisplays{this, "ShowComponentDisplays", true};
    Setting<bool> presetBrowserTypeToSearch{this, "PresetBrowserTypeToSearch", true};

    std::string helpFile;      // where the machine's administrator put it; empty: nowhere
    std::string presetFolder;  // ends in a separator; empty: there is no place for presets
    bool newVersion = false;   // this process is the first of this version of the product
    bool olderVersion = false; // another version was installed before

private:
    std::int32_t mode = 1;
    float scale = 0.0f;
};
