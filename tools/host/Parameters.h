// The parameters of an instance as a user names them.
// Threads: main.
#pragma once

#include "host/clap/Clap.h"
#include "tools/host/EventList.h"
#include "tools/host/PluginInstance.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

class Parameters {
public:
    explicit Parameters(const PluginInstance& wanted);

    const std::vector<clap_param_info>& all() const { return infos; }

    // By name without regard to case, or by "module/name". Throws Failure with near names when there is none, and when
    // several have the name.
    const clap_param_info& find(std::string_view name) const;
    bool knows(std::string_view name) const; // exactly one has it

    // What the plug-in makes of a text. Throws Failure when it makes nothing, or leaves the range.
    double valueOf(const clap_param_info& parameter, const std::string& text) const;

    // Empty where the plug-in gives none.
    std::string textOf(const clap_param_info& parameter, double value) const;

    double current(const clap_param_info& parameter) const;

private:
    std::vector<const clap_param_info*> matches(std::string_view name) const;

    const PluginInstance& instance;
    const clap_plugin_params* table;
    std::vector<clap_param_info> infos;
};

// "NAME=TEXT" for a list of events; the name ends at the first equals sign that makes it a known one.
void addAssignment(EventList& events, const Parameters& parameters, const std::string& assignment);

// A file of lines "seconds, parameter, value"; empty lines and those that start with # count for nothing.
void addAutomation(EventList& events, const Parameters& parameters, const std::string& path, double sampleRate);
