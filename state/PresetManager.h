// All presets of one kind: the user's own tree, and the older trees beside it. It numbers the presets for MIDI, finds
// them by name and walks from one to the next.
// Threads: main.
#pragma once

#include "state/PresetFolder.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

// Hears of every scan of a tree.
class PresetTreeListener {
public:
    virtual void treeScanned(const std::vector<Preset*>& presets, const std::vector<std::string>& roots) = 0;

protected:
    ~PresetTreeListener() = default;
};

class PresetManager : public PresetFolder {
public:
    enum class Direction { previous = 0, stay = 1, next = 2 };

    static constexpr std::int32_t programsPerBank = 128;

    PresetManager(std::string_view folder, std::string_view wantedExtension);

    void setListener(PresetTreeListener* wanted) noexcept { listener = wanted; } // not owned, null: none

    void rescan(std::string_view folder); // and numbers; tells the listener
    void rescanAll();                     // the extra folders too
    void addExtraFolder(std::string_view folder, std::string_view displayName);
    const std::vector<std::unique_ptr<PresetFolder>>& extraFolders() const noexcept { return extras; }

    // Deepest first, the extra folders at the end. Valid until the next scan.
    std::vector<Preset*> allPresets();
    std::size_t mainPresetCount() const noexcept { return mainCount; } // of the last list, without the extra folders

    Preset* findByName(std::string_view name, bool mainOnly); // null: none
    Preset* findByPath(std::string_view path);                // null: none
    Preset* neighbour(std::string_view path, Direction direction);

private:
    void tellListener();

    std::vector<std::unique_ptr<PresetFolder>> extras;
    std::size_t mainCount = 0;
    PresetTreeListener* listener = nullptr;
};
