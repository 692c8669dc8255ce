#include "framework/zelk/ZelkInit.h"

#include "framework/GenericPluginBase.h"

ZelkInit::ZelkInit(GenericPluginInfo& info) {
    info.productName = "Zelk";
    info.presetSignature = "ZK3p";
    info.type = GenericPluginInfo::Type::equaliser;
    // 0x8EE. Bits 7 and 11 are part of the product's word, though nothing in the framework asks for them.
    info.capabilities = GenericPluginInfo::mono | GenericPluginInfo::multichannel | GenericPluginInfo::sideChain |
                        GenericPluginInfo::instanceNames | GenericPluginInfo::midiLearnQueue | 1u << 7 | 1u << 11;
    info.acceptedSignatures = {2};
}

ZelkInit::ZelkInit(GenericPluginBase& plugin) : ZelkInit(plugin.info) {
    plugin.sourceCounts.audio = 3; // before the bands, behind them, side chain
    plugin.sourceCounts.levelsPerChannel = 1;
    plugin.sourceCounts.furtherLevels = 48; // two a band
}
