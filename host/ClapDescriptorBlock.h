// What both factories tell of the product: one block, built when the library is initialised, read-only afterwards.
// Threads: built and destroyed under the entry's lock, read by any.
#pragma once

#include "host/clap/Clap.h"

#include <string>
#include <vector>

class GenericPluginInfo;

class ClapDescriptorBlock {
public:
    explicit ClapDescriptorBlock(GenericPluginInfo& info); // makes the info's version record if it has none
    ClapDescriptorBlock(const ClapDescriptorBlock&) = delete;
    ClapDescriptorBlock& operator=(const ClapDescriptorBlock&) = delete;

    clap_plugin_descriptor plugin{};
    clap_preset_discovery_provider_descriptor provider{};

private:
    void fillPlugin();
    void fillProvider();

    // What the descriptors point into.
    std::string indexerName;
    std::string providerId;
    std::vector<const char*> features;
    std::string id;
    std::string manualUrl;
    std::string name;
    std::string vendor;
    std::string version;
};

// The block of the initialised library; null before the first init and after the last deinit.
const ClapDescriptorBlock* clapDescriptorBlock() noexcept; // [any]
