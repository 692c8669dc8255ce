// A .clap file that was loaded: its entry point and its plug-in factory.
// Threads: main.
#pragma once

#include "host/clap/Clap.h"
#include "tools/host/System.h"

#include <string>
#include <vector>

class PluginLibrary {
public:
    explicit PluginLibrary(const std::string& path); // throws Failure when it is no usable plug-in file
    ~PluginLibrary();
    PluginLibrary(const PluginLibrary&) = delete;
    PluginLibrary& operator=(const PluginLibrary&) = delete;

    const std::string& path() const { return file; }
    clap_version version() const { return entry->clap_version; }

    // At least one; valid as long as this object.
    const std::vector<const clap_plugin_descriptor*>& descriptors() const { return listed; }

    // An empty id means the first plug-in of the file. Throws Failure when there is none of that id.
    const clap_plugin_descriptor& descriptor(const std::string& id) const;

    const clap_plugin_factory& factory() const { return *plugins; }

    // A factory of another kind, null: not offered.
    const void* otherFactory(const char* factoryId) const { return entry->get_factory(factoryId); }

private:
    std::string file; // absolute, so that the loader searches nowhere else
    LoadedModule module;
    const clap_plugin_entry* entry = nullptr;
    const clap_plugin_factory* plugins = nullptr;
    std::vector<const clap_plugin_descriptor*> listed;
};
