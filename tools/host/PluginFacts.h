// Everything that can be told about an instance, gathered once for the text and the JSON of "info".
// Threads: main.
#pragma once

#include "tools/host/Ports.h"
#include "tools/host/Session.h"

#include <cstdint>
#include <string>
#include <vector>

struct ParameterFacts {
    clap_id id = CLAP_INVALID_ID;
    std::string name;
    std::string module;
    std::vector<std::string> flags;
    double least = 0.0; // plain values, with the plug-in's texts behind
    double most = 0.0;
    double preset = 0.0;
    double current = 0.0;
    std::string leastText;
    std::string mostText;
    std::string presetText;
    std::string currentText;
    std::vector<std::string> choices; // of a stepped parameter, from least to most; empty where there are too many
};

struct PluginFacts {
    std::string file;
    std::string clapVersion;
    std::string id;
    std::string name;
    std::string vendor;
    std::string version;
    std::string description;
    std::string url;
    std::string manualUrl;
    std::string supportUrl;
    std::vector<std::string> features;
    std::vector<std::string> allPlugins; // ids of the file
    AudioPorts ports;
    std::vector<PortConfig> configs;
    std::vector<NotePort> noteInputs;
    std::vector<NotePort> noteOutputs;
    std::vector<ParameterFacts> parameters;
    std::vector<std::string> extensions;
    double sampleRate = 0.0; // at which the two below were asked
    std::uint32_t latency = 0;
    std::uint32_t tail = 0;
};

// Activates the instance for a moment: latency and tail may depend on the sample rate.
PluginFacts gatherFacts(Session& session, double sampleRate);

std::vector<std::string> portFlags(std::uint32_t flags);
std::vector<std::string> dialectNames(std::uint32_t dialects);

std::string factsAsText(const PluginFacts& facts);
std::string factsAsJson(const PluginFacts& facts);
