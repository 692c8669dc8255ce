// Who made this, what it is called and which version it is. The numbers are constants of the build.
// Threads: any.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

class VersionInfo {
public:
    // The first version of a product carries no number in its name.
    static constexpr std::int32_t numberingBase = 1;

    explicit VersionInfo(std::string_view name) : product(name) {}

    static constexpr std::string_view makerName() noexcept { return "Tessivane"; }
    const std::string& productName() const noexcept { return product; }

    static std::int32_t majorVersion() noexcept;
    static std::int32_t minorVersion() noexcept;
    static std::int32_t revision() noexcept;
    static std::int32_t build() noexcept;
    static std::int32_t beta() noexcept; // 0: a release

    std::string displayName() const;  // "Zelk 3"
    static std::string versionText(); // "3.24": the minor number and the revision stand back to back

private:
    std::string product;
};
