#include "host/ClapDescriptorBlock.h"

#include "framework/GenericPluginInfo.h"

#include <array>
#include <cstddef>

namespace {

constexpr char makerUrl[] = "https://www.tessivane.com";
constexpr char supportUrl[] = "https://www.tessivane.com/support/";

// The second feature word by plug-in type; the first tells an instrument from an effect.
constexpr std::array<const char*, 9> featureOfType{nullptr,     nullptr,      "filter",   "delay", "compressor",
                                                   "equalizer", "distortion", "analyzer", "reverb"};

std::string lowerCase(std::string text) {
    for (char& c : text)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return text;
}

} // namespace

ClapDescriptorBlock::ClapDescriptorBlock(GenericPluginInfo& info) {
    const VersionInfo& product = info.version();
    vendor = VersionInfo::makerName();
    name = product.displayName();
    version = VersionInfo::versionText();
    manualUrl = std::string(makerUrl) + "/help/" + lowerCase(name);
    indexerName = name + " Preset Indexer";
    id = "com." + vendor + ".preset-discovery." + product.productName() + "." +
         std::to_string(VersionInfo::majorVersion());
    providerId = id;
    features.push_back(info.type == GenericPluginInfo::Type::instrument ? CLAP_PLUGIN_FEATURE_INSTRUMENT
                                                                        : CLAP_PLUGIN_FEATURE_AUDIO_EFFECT);
    const auto type = static_cast<std::size_t>(info.type);
    if (type < featureOfType.size() && featureOfType[type] != nullptr)
        features.push_back(featureOfType[type]);
    features.push_back(nullptr);
    fillPlugin();
    fillProvider();
}

void ClapDescriptorBlock::fillPlugin() {
    plugin.clap_version = CLAP_VERSION;
    plugin.id = id.c_str();
    plugin.name = name.c_str();
    plugin.vendor = vendor.c_str();
    plugin.url = makerUrl;
    plugin.manual_url = manualUrl.c_str();
    plugin.support_url = supportUrl;
    plugin.version = version.c_str();
    plugin.description = nullptr;
    plugin.features = features.data();
}

void ClapDescriptorBlock::fillProvider() {
    provider.clap_version = CLAP_VERSION;
    provider.id = providerId.c_str();
    provider.name = indexerName.c_str();
    provider.vendor = vendor.c_str();
}
