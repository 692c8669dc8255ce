#include "state/GenericStatefulPlugin.h"

#include "base/BinaryDataReader.h"
#include "base/BinaryDataWriter.h"
#include "base/NumberText.h"
#include "framework/AbstractPluginParameter.h"
#include "framework/ChangeBracket.h"
#include "framework/PluginInstances.h"
#include "framework/PluginSettings.h"
#include "framework/RegistryReader.h"
#include "framework/RegistryWriter.h"
#include "framework/SettingsKeys.h"
#include "platform/Files.h"
#include "platform/Folders.h"
#include "state/CustomPresetLoader.h"
#include "state/PresetFile.h"
#include "state/SharedPresets.h"
#include "state/StateBlock.h"

#include <algorithm>
#include <sstream>
#include <utility>

// Beginning

void GenericStatefulPlugin::createGlobals() {
    GenericPlugin::createGlobals();
    PluginInstances::ofProcess().adopt(std::make_unique<SharedPresets>(presetExtension()));
    if (const std::string data = dataFolder(); info.has(GenericPluginInfo::presetCache) && !data.empty())
        SharedPresets::ofProcess().openCache(appendPath(data, "PresetCache.dat"),
                                             {{info.presetSignature}, customValuesFromVersion()});
    addOlderPresetFolders();
}

void GenericStatefulPlugin::addComponentPresets(std::string_view folderName, std::string_view extension) {
    const std::string data = dataFolder();
    const std::string folder = data.empty() ? data : appendPath(appendPath(data, "Component Presets"), folderName);
    SharedPresets::ofProcess().addComponent(folder, extension);
}

void GenericStatefulPlugin::addOlderPresetFolders() {
    for (std::int32_t version = 1; version < VersionInfo::majorVersion(); ++version) {
        std::string folder;
        RegistryReader(productSettingsKey(info.version(), version)).stringValue(folder, "PresetFolder", {}, {});
        if (!folder.empty())
            presetManager().addExtraFolder(folder,
                                           std::string("V").append(wholeText(version)).append(" Preset Folder"));
    }
}

void GenericStatefulPlugin::initState() {
    allStored = std::make_unique<PresetParameterCollection>(*this, parameters());
    interfaceStored = std::make_unique<PresetParameterCollection>(*this, interfaceCollection());
    allStored->customValuesFromVersion = customValuesFromVersion();
    compare = std::make_unique<CompareStates>(*this);
    loadDefaultPreset();
    history = std::make_unique<UndoHistory>(*this);
}

// Presets

std::string GenericStatefulPlugin::dataFolder() {
    const std::string folder = userDataFolder();
    if (folder.empty())
        return folder;
    return withTrailingSeparator(
        appendPath(appendPath(folder, VersionInfo::makerName()), info.version().displayName()));
}

std::string GenericStatefulPlugin::interfaceDefaultsPath() {
    const std::string folder = dataFolder();
    return folder.empty() ? folder : appendPath(folder, "InterfaceDefaults.tvd");
}

PresetManager& GenericStatefulPlugin::presetManager(std::int32_t index) {
    return SharedPresets::ofProcess().manager(index);
}

void GenericStatefulPlugin::presetFolderChanged(const std::string& folder) {
    presetManager().rescan(folder);
}

bool GenericStatefulPlugin::setPresetFolder(const std::string& folder) {
    if (!directoryExists(folder))
        return false;
    sharedSettings().presetFolder = withTrailingSeparator(folder);
    presetManager().rescan(folder);
    std::string ignored;
    RegistryWriter(productSettingsKey(info.version()))
        .stringValue(ignored, "PresetFolder", sharedSettings().presetFolder, {});
    return true;
}

bool GenericStatefulPlugin::hasPresets() const {
    return !SharedPresets::ofProcess().manager(-1).empty();
}

bool GenericStatefulPlugin::installFactoryPresets(bool overOlder) {
    return unpackFactory(overOlder ? FactoryFiles::keepEdited : FactoryFiles::onlyMissing);
}

bool GenericStatefulPlugin::restoreFactoryPresets() {
    return unpackFactory(FactoryFiles::overwrite);
}

bool GenericStatefulPlugin::unpackFactory(FactoryFiles how) {
    const bool whole = unpackFactoryPresets(dataFolder(), presetManager().path(), how);
    SharedPresets& shared = SharedPresets::ofProcess();
    for (std::int32_t i = -1; i < shared.componentCount(); ++i)
        shared.manager(i).rescan(shared.manager(i).path());
    return whole;
}

std::string GenericStatefulPlugin::presetPath(std::string_view name) const {
    const bool forDefault = history == nullptr; // not one of an older version
    const Preset* const found = SharedPresets::ofProcess().manager(-1).findByName(name, forDefault);
    return found != nullptr ? found->path : std::string();
}

std::unique_ptr<CustomPresetLoader> GenericStatefulPlugin::createPresetLoader() {
    auto loader = std::make_unique<CustomPresetLoader>(*this, *allStored, presetVersion());
    loader->customValuesFromVersion = customValuesFromVersion();
    return loader;
}

std::string GenericStatefulPlugin::runPresetLoad(const std::string& path) {
    return createPresetLoader()->load(*openPresetFile(path)).message();
}

void GenericStatefulPlugin::loadProgram(std::int32_t bank, std::int32_t program) {
    const std::vector<Preset*> list = presetManager().allPresets();
    const std::int64_t index = std::int64_t{bank} * PresetManager::programsPerBank + program;
    if (index >= 0 && index < std::ssize(list))
        static_cast<void>(loadPresetFile(list[static_cast<std::size_t>(index)]->path)); // nobody waits for an answer
}

bool GenericStatefulPlugin::savePresetFile(const std::string& path) {
    takeAutomation();
    const std::string name(stripExtension(fileNameOf(path)));
    if (!isPresetName(name) || !createDirectories(std::string(folderOf(path))) ||
        !allStored->save(path, presetVersion()))
        return false;
    presetManager().rescanAll();
    currentPreset().setName(name);
    currentPreset().setPath(path);
    currentPreset().setModified(false);
    tellListener(eventPreset, 0);
    return true;
}

void GenericStatefulPlugin::loadInterfaceDefaults() {
    if (const std::string path = interfaceDefaultsPath(); fileExists(path))
        interfaceStored->load(path, presetVersion());
}

void GenericStatefulPlugin::saveInterfaceDefault(std::int32_t id) {
    if (id < 0 || id >= parameterCount())
        return;
    const std::int32_t index = interfaceStored->indexOf(parameter(id));
    const std::string path = interfaceDefaultsPath();
    if (index < 0 || path.empty() || !createDirectories(std::string(folderOf(path))))
        return;
    // Others may have stored their values meanwhile: only this one is written, unless the file is none of ours.
    if (!interfaceStored->save(path, presetVersion(), index))
        static_cast<void>(interfaceStored->save(path, presetVersion()));
}

// The host's state

bool GenericStatefulPlugin::writeState(std::ostream& stream) {
    StateBlock state;
    state.presetName = currentPreset().name();
    state.instanceId = givenInstanceId();
    state.automaticInstanceName = hasAutomaticName();
    state.instanceName = instanceName();
    state.presetModified = currentPreset().modified();
    state.customValues = customValues;
    BinaryDataWriter writer(&stream);
    state.write(writer, info.presetSignature);
    return writer.good();
}

bool GenericStatefulPlugin::readState(std::istream& stream) {
    BinaryDataReader reader(&stream);
    StateBlock state;
    if (!state.read(reader, info.presetSignature))
        return false;
    setCurrentPresetName(state.presetName, -1);
    if (info.has(GenericPluginInfo::instanceNames))
        restoreInstanceName(state.automaticInstanceName, state.instanceName);
    restoreInstanceId(state.instanceId);
    currentPreset().setModified(state.presetModified);
    if (customValues != state.customValues) {
        customValues = std::move(state.customValues);
        tellListener(eventCustomValues, 0);
    }
    return true;
}

bool GenericStatefulPlugin::stateEquals(std::istream& stream) {
    std::ostringstream present;
    if (!writeParameterBlock(present))
        return false;
    const std::string wanted = present.str();
    std::string found(wanted.size(), '\0');
    if (!stream.read(found.data(), std::ssize(found)) || found != wanted)
        return false;
    BinaryDataReader reader(&stream);
    StateBlock state;
    if (!state.read(reader, info.presetSignature))
        return false;
    return state.presetName == currentPreset().name() && state.automaticInstanceName == hasAutomaticName() &&
           (state.automaticInstanceName || state.instanceName == instanceName()) &&
           (state.version < 2 || state.presetModified == currentPreset().modified());
}

// History

void GenericStatefulPlugin::applySnapshot(const Snapshot& wanted) {
    {
        const ChangeBracket batch(*this);
        const std::size_t count = std::min(wanted.parameterValues.size(), static_cast<std::size_t>(parameterCount()));
        for (std::size_t i = 0; i < count; ++i)
            parameter(static_cast<std::int32_t>(i)).setValue(wanted.parameterValues[i], 0);
        markJump();
    }
    const bool otherPreset = wanted.presetPath != currentPreset().path();
    currentPreset().setName(wanted.presetName);
    currentPreset().setPath(wanted.presetPath);
    currentPreset().setModified(wanted.presetModified);
    if (otherPreset) {
        tellStateChanged(presetLoaded);
        tellListener(eventPreset, 0);
    }
    interfaceState = wanted.interfaceState;
    tellListener(eventInterfaceState, 0);
    customValues = wanted.customValues;
    tellListener(eventCustomValues, 0);
}

void GenericStatefulPlugin::pushUndo(std::int32_t parameterId) {
    compare->markDirty();
    history->push();
    saveInterfaceDefault(parameterId);
}
