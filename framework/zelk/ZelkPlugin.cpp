#include "framework/zelk/ZelkPlugin.h"

namespace {

constexpr GenericPlugin::InterfaceSize sizes[] = {{720, 335}, {775, 465}, {900, 540}, {1040, 624}, {1200, 720}};

} // namespace

ZelkPlugin::ZelkPlugin() : ZelkParameters(*static_cast<GenericPluginBase*>(this)) {
    init();
    initParameters();
    analyzer.addParametersTo(interfaceCollection());
}

ZelkPlugin::~ZelkPlugin() {
    end();
}

std::span<const GenericPlugin::InterfaceSize> ZelkPlugin::interfaceSizes() const noexcept {
    return sizes;
}
