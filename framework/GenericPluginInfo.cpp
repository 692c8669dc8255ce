#include "framework/GenericPluginInfo.h"

const VersionInfo& GenericPluginInfo::version() {
    if (versionInfo == nullptr)
        versionInfo = std::make_unique<VersionInfo>(productName);
    return *versionInfo;
}
