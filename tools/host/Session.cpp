#include "tools/host/Session.h"
#include "tools/host/FilePath.h"

#include "tools/host/EventList.h"
#include "tools/host/Failure.h"
#include "tools/host/Parameters.h"
#include "tools/host/Ports.h"
#include "tools/host/PresetIndex.h"
#include "tools/host/StateFile.h"

#include <cstdio>
#include <filesystem>

void Session::addOptions(Options& options) {
    options.add({"--plugin", "ID", "the plug-in of the file, where it holds several (default: the first)"});
    options.add({"--config", "ID", "port configuration, by number or name as \"info\" lists them"});
    options.add({"--state", "FILE", "load a saved state"});
    options.add({"--preset", "PRESET", "load a preset: a file, or the name of one that \"presets\" lists"});
    options.add({"--set", "NAME=TEXT", "set a parameter as if its value were typed in; repeatable", true});
    options.add({"--save-state", "FILE", "save the state at the end"});
    options.add({"--track-name", "NAME", "name of the track that the plug-in is told"});
    options.add({"--strict", "", "exit status 1 when the plug-in broke a rule of the interface"});
    options.add({"-v", "", "print what the plug-in logs and which rules it broke"});
    options.add({"--help", "", "this text"});
}

Session::Session(const Options& given)
    : options(given)
    , file(given.positional(0))
    , host({given.has("-v"), given.text("--track-name").value_or("")})
    , plugin(file, file.descriptor(given.text("--plugin").value_or("")), host) {
    const auto* track = plugin.extension<clap_plugin_track_info>(CLAP_EXT_TRACK_INFO);
    if (track != nullptr)
        track->changed(plugin.clap());
}

void Session::prepare(std::optional<std::uint32_t> channels) {
    if (const auto config = options.text("--config"))
        selectConfig(plugin, *config);
    else if (channels)
        fitChannels(plugin, *channels);
    if (const auto state = options.text("--state"))
        loadState(plugin, *state);
    if (const auto preset = options.text("--preset"))
        loadPreset(plugin, findPreset(file, *preset));
    const std::vector<std::string> assignments = options.all("--set");
    if (assignments.empty())
        return;
    const Parameters parameters(plugin);
    EventList events;
    for (const std::string& assignment : assignments)
        addAssignment(events, parameters, assignment);
    events.showBlock(0, 1);
    plugin.flush(*events.clap());
    plugin.serve();
}

int Session::finish() {
    if (const auto state = options.text("--save-state"))
        saveState(plugin, *state);
    const bool strict = options.has("--strict");
    if (strict || options.has("-v")) {
        for (const auto& [rule, times] : host.complaints())
            std::fprintf(stderr, "zelk-host: the plug-in broke a rule: %s (%d times)\n", rule.c_str(), times);
    }
    return strict && !host.complaints().empty() ? 1 : 0;
}

std::vector<std::string> Session::inputFiles(const Options& given) {
    std::vector<std::string> files{given.positional(0)};
    for (const char* option : {"--state", "--preset"}) {
        if (const auto path = given.text(option))
            files.push_back(*path);
    }
    return files;
}

void demandApart(const std::vector<std::string>& inputs, const std::vector<std::string>& outputs) {
    const auto same = [](const std::string& a, const std::string& b) {
        std::error_code error;
        return std::filesystem::equivalent(filePath(a), filePath(b), error) ||
               std::filesystem::weakly_canonical(filePath(a), error) ==
                   std::filesystem::weakly_canonical(filePath(b), error);
    };
    for (std::size_t i = 0; i < outputs.size(); ++i) {
        for (const std::string& input : inputs) {
            if (same(outputs[i], input))
                throw Failure(outputs[i] + " would be written over, but it is read as well");
        }
        for (std::size_t j = 0; j < i; ++j) {
            const bool device = std::filesystem::exists(filePath(outputs[i])) &&
                                !std::filesystem::is_regular_file(filePath(outputs[i]));
            if (same(outputs[i], outputs[j]) && !device)
                throw Failure(outputs[i] + " would be written twice");
        }
    }
}
