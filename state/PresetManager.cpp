#include "state/PresetManager.h"

#include "base/NumberText.h"

#include <algorithm>

PresetManager::PresetManager(std::string_view folder, std::string_view wantedExtension)
    : PresetFolder({}, wantedExtension) {
    if (!folder.empty())
        rescan(folder);
}

void PresetManager::rescan(std::string_view folder) {
    scan(folder);
    std::int32_t index = 0;
    for (Preset* const preset : allPresets()) {
        preset->bank = index / programsPerBank;
        preset->program = index % programsPerBank;
        preset->programText = '(' + wholeText(preset->bank);
        preset->programText.append("/").append(wholeText(preset->program)).append(") ").append(preset->name);
        ++index;
    }
    tellListener();
}

void PresetManager::rescanAll() {
    for (const auto& folder : extras) {
        const std::string displayName = folder->name();
        folder->scan(folder->path());
        folder->setName(displayName);
    }
    rescan(path());
}

void PresetManager::addExtraFolder(std::string_view folder, std::string_view displayName) {
    extras.push_back(std::make_unique<PresetFolder>(folder, extension()));
    extras.back()->setName(displayName);
}

void PresetManager::tellListener() {
    if (listener == nullptr)
        return;
    std::vector<std::string> roots{path()};
    for (const auto& folder : extras)
        roots.push_back(folder->path());
    listener->treeScanned(allPresets(), roots);
}

std::vector<Preset*> PresetManager::allPresets() {
    std::vector<Preset*> list;
    appendTo(list);
    mainCount = list.size();
    for (const auto& folder : extras)
        folder->appendTo(list);
    return list;
}

Preset* PresetManager::findByName(std::string_view name, bool mainOnly) {
    const std::vector<Preset*> list = allPresets();
    const auto end = mainOnly ? list.begin() + static_cast<std::ptrdiff_t>(mainCount) : list.end();
    const auto found = std::find_if(list.begin(), end, [name](const Preset* preset) { return preset->name == name; });
    return found != end ? *found : nullptr;
}

Preset* PresetManager::findByPath(std::string_view wanted) {
    return neighbour(wanted, Direction::stay);
}

Preset* PresetManager::neighbour(std::string_view from, Direction direction) {
    const std::vector<Preset*> list = allPresets();
    const auto found =
        std::find_if(list.begin(), list.end(), [from](const Preset* preset) { return preset->path == from; });
    if (found == list.end())
        return nullptr;
    const auto index = static_cast<std::size_t>(found - list.begin());
    std::size_t wanted = index;
    if (direction == Direction::previous)
        wanted = (index + list.size() - 1) % list.size();
    else if (direction == Direction::next)
        wanted = (index + 1) % list.size();
    // The main presets wrap among themselves.
    if (index < mainCount && wanted >= mainCount)
        wanted = direction == Direction::next ? 0 : mainCount - 1;
    return list[wanted];
}
