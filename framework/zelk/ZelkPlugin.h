// The editor side of the product.
// Threads: main but where the base says more.
#pragma once

#include "framework/zelk/ZelkParameters.h"
#include "framework/zelk/ZelkSettings.h"
#include "state/GenericStatefulPlugin.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>

class ZelkPlugin final : public GenericStatefulPlugin, public ZelkParameters {
public:
    ZelkPlugin();
    ~ZelkPlugin() override;

    void updateLatency() override;

    bool canResize() const noexcept override { return true; }
    bool hasInterface() const noexcept override { return true; }
    std::span<const InterfaceSize> interfaceSizes() const noexcept override;

    [[nodiscard]] bool loadControllerMap() override;
    void loadFactoryControllerMap() override;
    void saveControllerMap() override;

    std::int32_t presetVersion() const noexcept override { return 4; }

    ZelkSettings& zelkSettings() noexcept { return static_cast<ZelkSettings&>(settings()); }
    ZelkSharedSettings& zelkSharedSettings() noexcept { return static_cast<ZelkSharedSettings&>(sharedSettings()); }

protected:
    std::unique_ptr<SharedSettings> createSharedSettings() override;
    std::unique_ptr<Settings> createSettings() override;
    void createGlobals() override;
    std::string runPresetLoad(const std::string& path) override; // also tries the older parameter sets
    void afterParameterChange(std::int32_t id) override;
};
