// The editor side of the product.
// Threads: main.
#pragma once

#include "framework/GenericPlugin.h"
#include "framework/zelk/ZelkParameters.h"

#include <span>

class ZelkPlugin final : public GenericPlugin, public ZelkParameters {
public:
    ZelkPlugin();
    ~ZelkPlugin() override;

    bool canResize() const noexcept override { return true; }
    std::span<const InterfaceSize> interfaceSizes() const noexcept override;
};
