// The editor side with all that is stored: presets, the state that a host keeps, undo and compare. What a product's
// presets look like is told by the derived class.
// Threads: main.
#pragma once

#include "framework/GenericPlugin.h"
#include "state/CompareStates.h"
#include "state/FactoryPresets.h"
#include "state/PresetManager.h"
#include "state/PresetParameterCollection.h"
#include "state/UndoHistory.h"

#include <cstdint>
#include <istream>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>

class CustomPresetLoader;

class GenericStatefulPlugin : public GenericPlugin {
public:
    // Presets.
    [[nodiscard]] bool savePresetFile(const std::string& path); // then it is the current one and the tree is read again
    virtual PresetManager& presetManager(std::int32_t index = -1); // -1: the main one, else that of a component
    [[nodiscard]] bool setPresetFolder(const std::string& folder); // the user's choice; false: it is no folder
    [[nodiscard]] bool restoreFactoryPresets();                    // over what the user made of them
    void saveInterfaceDefault(std::int32_t id);                    // nothing for a parameter that presets change

    const PresetParameterCollection& presetParameters() const noexcept { return *allStored; }
    const PresetParameterCollection& interfacePresetParameters() const noexcept { return *interfaceStored; }
    virtual std::int32_t presetVersion() const noexcept = 0;
    virtual std::int32_t customValuesFromVersion() const noexcept { return 0; } // 0: presets have none
    std::string dataFolder(); // where the product keeps its own files; empty: there is no place for them

    // The state that a host keeps, behind the parameter block. It makes no undo step.
    [[nodiscard]] bool writeState(std::ostream& stream) override;
    [[nodiscard]] bool readState(std::istream& stream) override;  // all of it or nothing
    [[nodiscard]] virtual bool stateEquals(std::istream& stream); // of both blocks; the instance's id does not count

    // History.
    UndoHistory& undoHistory() noexcept { return *history; }
    CompareStates& compareStates() noexcept { return *compare; }
    void applySnapshot(const Snapshot& wanted);
    void pushUndo(std::int32_t parameterId); // every gesture ends here, with its parameter or -1 for several

protected:
    // The end of the derived class's construction: the parameters are complete then. Loads the default preset.
    void initState();

    void createGlobals() override;
    void addComponentPresets(std::string_view folderName, std::string_view extension);

    void presetFolderChanged(const std::string& folder) override;
    bool hasPresets() const override;
    bool installFactoryPresets(bool overOlder) override;
    std::string presetPath(std::string_view name) const override;
    std::string runPresetLoad(const std::string& path) override;
    void loadInterfaceDefaults() override;
    void loadProgram(std::int32_t bank, std::int32_t program) override;

    virtual std::unique_ptr<CustomPresetLoader> createPresetLoader();

private:
    std::string interfaceDefaultsPath();
    bool unpackFactory(FactoryFiles how);
    void addOlderPresetFolders();

    std::unique_ptr<PresetParameterCollection> allStored;
    std::unique_ptr<PresetParameterCollection> interfaceStored;
    std::unique_ptr<CompareStates> compare;
    std::unique_ptr<UndoHistory> history; // null until initState
};
