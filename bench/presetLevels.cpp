// Listens to the factory presets by numbers: how many dB louder pink noise becomes by each, with its dynamic bands at
// rest, in the middle and at the end of their range.
#include "framework/zelk/ZelkPlugin.h"
#include "state/PresetManager.h"
#include "tests/support/PresetLoudness.h"
#include "tests/support/TemporaryHome.h"

#include <cstdio>
#include <cstdlib>

int main() {
    const TemporaryHome home; // the presets are unpacked into it
    ZelkPlugin plugin;
    PresetManager manager(home.path() + "Documents/Tessivane/Presets/Zelk 3/", ".tvp");
    std::printf("   rest   half   full   preset\n");
    for (const Preset* preset : manager.allPresets()) {
        if (!plugin.loadPresetFile(preset->path).empty()) {
            std::fprintf(stderr, "%s does not load\n", preset->path.c_str());
            return EXIT_FAILURE;
        }
        const bool isSurround = preset->path.find("/Surround/") != std::string::npos;
        const PresetLoudness loudness(plugin, isSurround ? chl::Layout::atmos714 : chl::Layout::stereo);
        std::printf("%+7.2f%+7.2f%+7.2f   %s\n", loudness.changeDb(0.0), loudness.changeDb(0.5), loudness.changeDb(1.0),
                    preset->name.c_str());
    }
}
