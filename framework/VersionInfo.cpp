#include "framework/VersionInfo.h"

#include "base/NumberText.h"

std::int32_t VersionInfo::majorVersion() noexcept {
    return ZELK_VERSION_MAJOR;
}

std::int32_t VersionInfo::minorVersion() noexcept {
    return ZELK_VERSION_MINOR;
}

std::int32_t VersionInfo::revision() noexcept {
    return ZELK_VERSION_REVISION;
}

std::int32_t VersionInfo::build() noexcept {
    return ZELK_VERSION_BUILD;
}

std::int32_t VersionInfo::beta() noexcept {
    return ZELK_VERSION_BETA;
}

std::string VersionInfo::displayName() const {
    return majorVersion() > numberingBase ? product + " " + wholeText(majorVersion()) : product;
}

std::string VersionInfo::versionText() {
    std::string text = wholeText(majorVersion()) + "." + wholeText(minorVersion()) + wholeText(revision());
    if (beta() > 0)
        text += " beta " + wholeText(beta());
    return text;
}
