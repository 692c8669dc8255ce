// What a host's main thread does to an active instance while its audio runs: saves and loads, presets good and bad,
// questions of every kind, and the plug-in's own work for the main thread.
// Threads: main.
#pragma once

#include "tests/soak/SoakRandom.h"
#include "tests/support/ClapTestHost.h"

#include <cstddef>
#include <string>
#include <vector>

class SoakTasks {
public:
    SoakTasks(const clap_plugin* wanted, ClapTestHost& owner, std::vector<std::string> presetFiles, SoakRandom source);

    void runOne();
    void answerCallback(); // on_main_thread, when the plug-in has asked

    std::size_t getStatesLoaded() const { return statesLoaded; }
    std::size_t getPresetsLoaded() const { return presetsLoaded; }

private:
    template <typename Extension>
    const Extension& extension(const char* id) const {
        return *static_cast<const Extension*>(plugin->get_extension(plugin, id));
    }

    void save();
    void load();
    void loadPreset();
    void ask();

    const clap_plugin* const plugin;
    ClapTestHost& host;
    const std::vector<std::string> presets;
    SoakRandom random;
    std::vector<std::string> states; // the latest saved
    std::size_t statesLoaded = 0;
    std::size_t presetsLoaded = 0;
};
