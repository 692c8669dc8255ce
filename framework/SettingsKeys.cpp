#include "framework/SettingsKeys.h"

#include "platform/Folders.h"

#include "base/NumberText.h"

namespace {

std::string productPath(const VersionInfo& product, std::int32_t majorVersion) {
    return std::string(VersionInfo::makerName()) + "/" + product.productName() + "/" + wholeText(majorVersion) + ".0";
}

} // namespace

SettingsKey productSettingsKey(const VersionInfo& product, std::int32_t majorVersion) {
    return {SettingsKey::Root::user, productPath(product, majorVersion)};
}

SettingsKey machineSettingsKey(const VersionInfo& product) {
    return {SettingsKey::Root::machine, productPath(product, VersionInfo::majorVersion())};
}

SettingsKey makerSettingsKey() {
    return {SettingsKey::Root::user, std::string(VersionInfo::makerName())};
}

std::string standardPresetFolder(const VersionInfo& product) {
    const std::string documents = documentsFolder();
    if (documents.empty())
        return documents;
    const std::string presets = appendPath(appendPath(documents, VersionInfo::makerName()), "Presets");
    return withTrailingSeparator(appendPath(presets, product.displayName()));
}
