// The settings of an instance and of the process, and what follows from them.
#include "base/NumberText.h"
#include "framework/GenericPlugin.h"
#include "framework/PluginInstances.h"
#include "framework/PluginSettings.h"
#include "framework/RegistryReader.h"
#include "framework/RegistryWriter.h"
#include "framework/SettingsKeys.h"
#include "platform/Folders.h"

#include <algorithm>

namespace {

constexpr std::string_view lastVersionName = "LastVersion";

} // namespace

GenericPlugin::SharedSettings& GenericPlugin::sharedSettings() noexcept {
    return PluginInstances::ofProcess().settings();
}

std::unique_ptr<GenericPlugin::SharedSettings> GenericPlugin::createSharedSettings() {
    return std::make_unique<SharedSettings>(info.version());
}

std::unique_ptr<GenericPlugin::Settings> GenericPlugin::createSettings() {
    return std::make_unique<Settings>(*this);
}

std::string GenericPlugin::defaultPresetFolder() {
    return standardPresetFolder(info.version());
}

void GenericPlugin::readSettings() {
    SharedSettings& shared = sharedSettings();
    // What is read must not be stored again: another process may have changed it since this one read it.
    shared.alive = false;
    RegistryReader reader(productSettingsKey(info.version()));
    passSettings(reader);
    if (PluginInstances::ofProcess().empty()) {
        std::string lastVersion;
        reader.stringValue(lastVersion, lastVersionName, {}, {});
        shared.newVersion = lastVersion != VersionInfo::versionText();
        shared.olderVersion = !lastVersion.empty();
        for (std::int32_t version = 1; version < VersionInfo::majorVersion(); ++version)
            shared.olderVersion = shared.olderVersion || settingsExist(productSettingsKey(info.version(), version));
        RegistryReader(machineSettingsKey(info.version())).stringValue(shared.helpFile, "HelpFileName", {}, {});
        if (shared.newVersion)
            recordVersion();
    }
    shared.alive = true;
    ownSettings->alive = true;
}

// So that every key stands there from the first start of a version on.
void GenericPlugin::recordVersion() {
    sharedSettings().showWelcomeHint = true;
    RegistryWriter writer(productSettingsKey(info.version()));
    passSettings(writer);
    std::string ignored;
    writer.stringValue(ignored, lastVersionName, VersionInfo::versionText(), {});
}

void GenericPlugin::passSettings(SettingSerializer& serializer) {
    SharedSettings& shared = sharedSettings();
    shared.serialize(serializer);
    ownSettings->serialize(serializer);

    std::string folder;
    const std::string standard = defaultPresetFolder();
    serializer.stringValue(folder, "PresetFolder", shared.presetFolder, standard);
    folder = folder.empty() ? folder : withTrailingSeparator(folder);
    if (folder != shared.presetFolder) {
        shared.presetFolder = directoryExists(folder) ? folder : standard;
        presetFolderChanged(shared.presetFolder);
    }

    RegistryReader maker(makerSettingsKey());
    shared.chooseGraphics(maker.intValue("GraphicsAcceleration", 0, SharedSettings::absent),
                          maker.intValue("RetinaEnabled", 0, SharedSettings::absent));
}

// The window

void GenericPlugin::constrainSize(int& width, int& height) const noexcept {
    int smallestWidth = 0;
    int smallestHeight = 0;
    for (const InterfaceSize& size : interfaceSizes()) {
        smallestWidth = smallestWidth == 0 ? size.width : std::min(smallestWidth, size.width);
        smallestHeight = smallestHeight == 0 ? size.height : std::min(smallestHeight, size.height);
    }
    width = std::max(width, smallestWidth);
    height = std::max(height, smallestHeight);
}

int GenericPlugin::interfaceWidth() const {
    const auto row = static_cast<std::size_t>(ownSettings->interfaceLayout.get()); // -1: beyond every table
    return row < interfaceSizes().size() ? interfaceSizes()[row].width : ownSettings->interfaceWidth.get();
}

int GenericPlugin::interfaceHeight() const {
    const auto row = static_cast<std::size_t>(ownSettings->interfaceLayout.get());
    return row < interfaceSizes().size() ? interfaceSizes()[row].height : ownSettings->interfaceHeight.get();
}

int GenericPlugin::maxWidth() const {
    int width = interfaceWidth();
    for (const InterfaceSize& size : interfaceSizes())
        width = std::max(width, size.width);
    return width;
}

int GenericPlugin::maxHeight() const {
    int height = interfaceHeight();
    for (const InterfaceSize& size : interfaceSizes())
        height = std::max(height, size.height);
    return height;
}
