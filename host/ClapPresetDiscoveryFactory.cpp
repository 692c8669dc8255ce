#include "host/ClapPresetDiscoveryFactory.h"

#include "host/ClapDescriptorBlock.h"
#include "host/ClapGuard.h"
#include "host/ClapPresetProvider.h"

#include <cstring>

namespace {

std::uint32_t providerCount(const clap_preset_discovery_factory*) noexcept {
    return 1;
}

const clap_preset_discovery_provider_descriptor* providerDescriptor(const clap_preset_discovery_factory*,
                                                                    std::uint32_t index) noexcept {
    const ClapDescriptorBlock* const block = clapDescriptorBlock();
    return block != nullptr && index == 0 ? &block->provider : nullptr;
}

const clap_preset_discovery_provider* createProvider(const clap_preset_discovery_factory*,
                                                     const clap_preset_discovery_indexer* indexer,
                                                     const char* id) noexcept {
    const ClapDescriptorBlock* const block = clapDescriptorBlock();
    if (block == nullptr || indexer == nullptr || id == nullptr || std::strcmp(id, block->provider.id) != 0)
        return nullptr;
    return clapGuard<const clap_preset_discovery_provider*>(
        nullptr, [&] { return (new ClapPresetProvider(block->provider, *indexer))->clapProvider(); });
}

} // namespace

const clap_preset_discovery_factory clapPresetDiscoveryFactory{providerCount, providerDescriptor, createProvider};
