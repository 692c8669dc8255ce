#include "tools/resources/PresetCatalogue.h"

#include "tools/resources/PresetLayout.h"

#include <cstddef>
#include <fstream>
#include <iterator>
#include <set>
#include <string_view>

namespace {

namespace fs = std::filesystem;

// As the plug-in shows it. It is the first of the parameters behind the bands.
std::string_view processingMode(const PresetSource& source) {
    std::string_view names = PresetLayout::globals[0].valueNames;
    for (float index = source.values[PresetLayout::firstGlobal]; index > 0.0f; --index)
        names.remove_prefix(names.find(',') + 1);
    return names.substr(0, names.find(','));
}

void collect(const fs::path& path, const std::string& folder, std::vector<CataloguedPreset>& presets) {
    std::set<fs::path> files;
    std::set<fs::path> folders;
    for (const fs::directory_entry& entry : fs::directory_iterator(path)) {
        if (entry.is_directory())
            folders.insert(entry.path());
        else if (entry.path().extension() == presetSourceExtension)
            files.insert(entry.path());
    }
    for (const fs::path& file : files) {
        std::ifstream stream(file, std::ios::binary);
        const std::string text{std::istreambuf_iterator<char>(stream), {}};
        try {
            presets.push_back({folder, file.stem().string(), readPresetSource(text)});
        } catch (const PresetSourceError& error) {
            throw PresetSourceError(file.string() + ": " + error.what());
        }
    }
    for (const fs::path& inner : folders) {
        const std::string name = inner.filename().string();
        collect(inner, folder.empty() ? name : folder + "/" + name, presets);
    }
}

} // namespace

std::vector<CataloguedPreset> readPresetCatalogue(const fs::path& root) {
    std::vector<CataloguedPreset> presets;
    collect(root, {}, presets);
    return presets;
}

std::string presetPage(const std::vector<CataloguedPreset>& presets) {
    std::string page = "# Factory presets\n\n"
                       "What each preset is for, and the processing mode that it sets. This page is made of the "
                       "sources in\n`resources/presets/` by `zelk-pack page resources/presets docs/presets.md`; a "
                       "test compares the two.\n";
    const std::string* folder = nullptr;
    for (const CataloguedPreset& preset : presets) {
        if (folder == nullptr || *folder != preset.folder) {
            folder = &preset.folder;
            page += "\n## " + (folder->empty() ? std::string("Top level") : *folder) +
                    "\n\n| Preset | For | Mode |\n|---|---|---|\n";
        }
        page += "| " + preset.name + " | " + preset.source.about + " | ";
        page.append(processingMode(preset.source)) += " |\n";
    }
    return page;
}
