// The one symbol that the library exports, and the life of what it shares before any instance exists.
#include "framework/GenericPluginInfo.h"
#include "framework/zelk/ZelkInit.h"
#include "host/ClapDescriptorBlock.h"
#include "host/ClapPluginFactory.h"
#include "host/ClapPresetDiscoveryFactory.h"
#include "platform/CriticalSections.h"
#include "platform/OwnModule.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

namespace {

// Guarded by processSection.
std::uint32_t useCount = 0;
std::unique_ptr<const ClapDescriptorBlock> block;
std::string modulePath;

std::unique_ptr<const ClapDescriptorBlock> buildBlock() {
    GenericPluginInfo info;
    const ZelkInit product(info);
    return std::make_unique<const ClapDescriptorBlock>(info);
}

bool initEntry(const char* path) noexcept {
    const ScopedLock lock(processSection());
    if (useCount++ > 0)
        return true;
    try {
        if (findOwnModule(path != nullptr ? path : "", modulePath)) {
            block = buildBlock();
            return true;
        }
    } catch (...) {
        block.reset();
    }
    useCount = 0;
    return false;
}

void deinitEntry() noexcept {
    const ScopedLock lock(processSection());
    if (useCount == 0 || --useCount > 0)
        return;
    block.reset();
}

const void* getFactory(const char* id) noexcept {
    if (id == nullptr)
        return nullptr;
    if (std::strcmp(id, CLAP_PRESET_DISCOVERY_FACTORY_ID) == 0)
        return &clapPresetDiscoveryFactory;
    if (std::strcmp(id, CLAP_PLUGIN_FACTORY_ID) == 0)
        return &clapPluginFactory;
    return nullptr;
}

} // namespace

const ClapDescriptorBlock* clapDescriptorBlock() noexcept {
    return block.get();
}

#ifdef __GLIBCXX__
// The library brings its own C++ runtime, whose store for exceptions without memory (71 KiB) nobody else gives back
// when a host unloads the library.
namespace __gnu_cxx {
[[gnu::weak]] void __freeres() noexcept;
}

namespace {
[[gnu::destructor]] void releaseRuntime() noexcept {
    if (__gnu_cxx::__freeres != nullptr)
        __gnu_cxx::__freeres();
}
} // namespace
#endif

extern "C" {
[[gnu::visibility("default")]] extern const clap_plugin_entry clap_entry;
const clap_plugin_entry clap_entry{CLAP_VERSION, initEntry, deinitEntry, getFactory};
}
