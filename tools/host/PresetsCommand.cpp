// zelk-host presets: what a host's preset browser would show.
#include "host/clap/Clap.h"
#include "tools/host/Commands.h"
#include "tools/host/FilePath.h"
#include "tools/host/Options.h"
#include "tools/host/PresetIndex.h"
#include "tools/host/TextTools.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>

namespace {

std::string joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words)
        text += (text.empty() ? "" : ", ") + word;
    return text;
}

std::string flagWords(std::uint32_t flags) {
    std::vector<std::string> words;
    const std::pair<std::uint32_t, const char*> names[] = {{CLAP_PRESET_DISCOVERY_IS_FACTORY_CONTENT, "factory"},
                                                           {CLAP_PRESET_DISCOVERY_IS_USER_CONTENT, "user"},
                                                           {CLAP_PRESET_DISCOVERY_IS_DEMO_CONTENT, "demo"},
                                                           {CLAP_PRESET_DISCOVERY_IS_FAVORITE, "favorite"}};
    for (const auto& [flag, word] : names)
        if ((flags & flag) != 0)
            words.emplace_back(word);
    return joined(words);
}

void printPreset(const IndexedPreset& preset, const IndexedLocation& location) {
    const std::string folder =
        pathText(filePath(preset.path).parent_path().lexically_relative(filePath(location.path)));
    std::printf("  %-32s %s", onOneLine(preset.name).c_str(), onOneLine(folder == "." ? "" : folder).c_str());
    if (preset.flags != location.flags)
        std::printf(" [%s]", flagWords(preset.flags).c_str());
    if (!preset.creators.empty())
        std::printf(" by %s", onOneLine(joined(preset.creators)).c_str());
    if (!preset.features.empty())
        std::printf(" (%s)", onOneLine(joined(preset.features)).c_str());
    std::printf("\n");
    if (!preset.description.empty())
        std::printf("    %s\n", onOneLine(preset.description).c_str());
}

} // namespace

int presetsCommand(const std::vector<std::string>& words) {
    Options options("presets",
                    "Lists the presets that the plug-in file tells of, as the browser of a host would show them. No\n"
                    "plug-in is made for it.",
                    {"FILE.clap"});
    options.add({"--help", "", "this text"});
    options.parse(words);
    if (options.wantsHelp()) {
        std::fputs(options.help().c_str(), stdout);
        return 0;
    }
    const PluginLibrary library(options.positional(0));
    const PresetIndex index = indexPresets(library);
    for (const IndexedLocation& location : index.locations) {
        std::printf("%s (%s): %zu presets in %s\n", onOneLine(location.name).c_str(), flagWords(location.flags).c_str(),
                    location.presets.size(), onOneLine(location.path).c_str());
        for (const IndexedPreset& preset : location.presets)
            printPreset(preset, location);
        if (location.presets.empty() && !std::filesystem::exists(filePath(location.path)))
            std::printf("  (the folder does not exist; the plug-in fills it when it first runs)\n");
    }
    if (index.refusedFiles > 0)
        std::printf("%zu files are no presets of this plug-in\n", index.refusedFiles);
    for (const std::string& error : index.errors)
        std::fprintf(stderr, "zelk-host: note: %s\n", onOneLine(error).c_str());
    return 0;
}
