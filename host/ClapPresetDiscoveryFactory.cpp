#include "host/ClapPresetDiscoveryFactory.h"

#include "host/ClapDescriptorBlock.h"

namespace {

std::uint32_t providerCount(const clap_preset_discovery_factory*) noexcept {
    return 1;
}

const clap_preset_discovery_provider_descriptor* providerDescriptor(const clap_preset_discovery_factory*,
                                                                    std::uint32_t index) noexcept {
    const ClapDescriptorBlock* const block = clapDescriptorBlock();
    return block != nullptr && index == 0 ? &block->provider : nullptr;
}

// No provider can be made before presets have files; a host takes null as a failure and goes on without.
const clap_preset_discovery_provider* createProvider(const clap_preset_discovery_factory*,
                                                     const clap_preset_discovery_indexer*, const char*) noexcept {
    return nullptr;
}

} // namespace

const clap_preset_discovery_factory clapPresetDiscoveryFactory{providerCount, providerDescriptor, createProvider};
