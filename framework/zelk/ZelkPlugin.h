// The editor side of the product.
// Threads: main but where the base says more.
#pragma once

#include "framework/GenericPlugin.h"
#include "framework/zelk/ZelkParameters.h"
#include "framework/zelk/ZelkSettings.h"

#include <memory>
#include <span>

class ZelkPlugin final : public GenericPlugin, public ZelkParameters {
public:
    ZelkPlugin();
    ~ZelkPlugin() override;

    void updateLatency() override;

    bool canResize() const noexcept override { return true; }
    bool hasInterface() const noexcept override { return true; }
    std::span<const InterfaceSize> interfaceSizes() const noexcept override;

    ZelkSettings& zelkSettings() noexcept { return static_cast<ZelkSettings&>(settings()); }
    ZelkSharedSettings& zelkSharedSettings() noexcept { return static_cast<ZelkSharedSettings&>(sharedSettings()); }

protected:
    std::unique_ptr<SharedSettings> createSharedSettings() override;
    std::unique_ptr<Settings> createSettings() override;
    void afterParameterChange(std::int32_t id) override;
};
