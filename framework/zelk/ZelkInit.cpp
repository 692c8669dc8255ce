#include "framework/zelk/ZelkInit.h"

void fillZelkInfo(GenericPluginInfo& info) {
    info.productName = "Zelk";
    info.presetSignature = "ZK3p";
    info.type = GenericPluginInfo::Type::equaliser;
    info.capabilities = 0x8EE;
    info.acceptedSignatures = {2};
}
