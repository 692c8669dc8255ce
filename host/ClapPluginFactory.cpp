#include "host/ClapPluginFactory.h"

#include "host/ClapDescriptorBlock.h"
#include "host/ClapPluginAdapter.h"

#include <cstring>

namespace {

std::uint32_t pluginCount(const clap_plugin_factory*) noexcept {
    return 1;
}

const clap_plugin_descriptor* pluginDescriptor(const clap_plugin_factory*, std::uint32_t index) noexcept {
    const ClapDescriptorBlock* const block = clapDescriptorBlock();
    return block != nullptr && index == 0 ? &block->plugin : nullptr;
}

const clap_plugin* createPlugin(const clap_plugin_factory*, const clap_host* host, const char* pluginId) noexcept {
    const ClapDescriptorBlock* const block = clapDescriptorBlock();
    if (block == nullptr || host == nullptr || pluginId == nullptr || host->clap_version.major == 0 ||
        std::strcmp(pluginId, block->plugin.id) != 0)
        return nullptr;
    try {
        return (new ClapPluginAdapter(*host, block->plugin))->clapPlugin();
    } catch (...) {
        return nullptr;
    }
}

} // namespace

const clap_plugin_factory clapPluginFactory{pluginCount, pluginDescriptor, createPlugin};
