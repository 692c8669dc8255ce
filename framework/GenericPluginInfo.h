// What the framework and the host binding must know about a product before any of its objects exists.
// Threads: filled on the main thread, then read by any.
#pragma once

#include "framework/VersionInfo.h"

#include <cstdint>
#include <memory>
#include <set>
#include <string>

class GenericPluginInfo {
public:
    enum class Type : std::int32_t { instrument = 1, equaliser = 5 };

    enum Capability : std::uint32_t {
        mono = 1u << 1,
        multichannel = 1u << 2,
        sideChain = 1u << 3,
        instanceNames = 1u << 5,
        midiLearnQueue = 1u << 6,
        presetCache = 1u << 8,
        textPresets = 1u << 9,
    };

    [[nodiscard]] bool has(Capability wanted) const noexcept { return (capabilities & wanted) != 0; }

    // Made on first need, for the product name of that moment.
    const VersionInfo& version(); // [main]

    std::string productName;
    std::string presetSignature;
    Type type = Type::equaliser;
    std::uint32_t capabilities = 0;
    std::set<std::int32_t> acceptedSignatures;

private:
    std::unique_ptr<VersionInfo> versionInfo;
};
