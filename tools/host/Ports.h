// The audio and note ports of an instance, its ready-made port configurations, and the choice among them.
// Threads: main, instance inactive.
#pragma once

#include "host/clap/Clap.h"
#include "tools/host/PluginInstance.h"

#include <cstdint>
#include <string>
#include <vector>

struct AudioPort {
    clap_id id = CLAP_INVALID_ID;
    std::string name;
    std::uint32_t flags = 0;
    std::uint32_t channels = 0;
    std::string type; // empty: unspecified
    clap_id inPlacePair = CLAP_INVALID_ID;
};

struct NotePort {
    clap_id id = CLAP_INVALID_ID;
    std::string name;
    std::uint32_t dialects = 0;
    std::uint32_t preferredDialect = 0;
};

struct PortConfig {
    clap_id id = CLAP_INVALID_ID;
    std::string name;
    std::uint32_t inputPorts = 0;
    std::uint32_t outputPorts = 0;
    std::uint32_t inputChannels = 0; // of the main ports, 0: there is none
    std::uint32_t outputChannels = 0;
    std::string inputType;
    std::string outputType;
};

struct AudioPorts {
    std::vector<AudioPort> inputs;
    std::vector<AudioPort> outputs;

    std::uint32_t mainInputChannels() const { return inputs.empty() ? 0 : inputs.front().channels; }
    std::uint32_t mainOutputChannels() const { return outputs.empty() ? 0 : outputs.front().channels; }
};

AudioPorts audioPorts(const PluginInstance& instance);
std::vector<NotePort> notePorts(const PluginInstance& instance, bool inputs);
std::vector<PortConfig> portConfigs(const PluginInstance& instance);

// By number or by name; throws Failure when there is none of that kind or the plug-in refuses.
void selectConfig(PluginInstance& instance, const std::string& wanted);

// Makes the main input take this many channels: nothing where it does already, else the configuration that fits best.
// Throws Failure with what there is when none fits.
void fitChannels(PluginInstance& instance, std::uint32_t channels);
