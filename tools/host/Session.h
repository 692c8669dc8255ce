// What all subcommands share: the plug-in file, the host's side, an instance, and the options that bring it into the
// state wanted.
// Threads: main.
#pragma once

#include "tools/host/HostSide.h"
#include "tools/host/Options.h"
#include "tools/host/PluginInstance.h"
#include "tools/host/PluginLibrary.h"

#include <cstdint>
#include <optional>
#include <vector>

class Session {
public:
    static void addOptions(Options& options);

    explicit Session(const Options& given); // the plug-in file is the first positional

    PluginInstance& instance() { return plugin; }
    const PluginLibrary& library() const { return file; }

    // Configuration, then state, preset and settings. With a channel count, a configuration that fits is chosen where
    // the user chose none.
    void prepare(std::optional<std::uint32_t> channels = std::nullopt);

    // The state file when one is wanted, and what the plug-in did wrong. Returns the exit status.
    int finish();

    // Every file that the options name to be read.
    static std::vector<std::string> inputFiles(const Options& given);

    static constexpr double leastRate = 1.0;
    static constexpr double mostRate = 1e7;

private:
    const Options& options;
    PluginLibrary file;
    HostSide host;
    PluginInstance plugin;
};

// Throws Failure when an output is also an input or another output.
void demandApart(const std::vector<std::string>& inputs, const std::vector<std::string>& outputs);
