#include "framework/zelk/ZelkPlugin.h"

#include "framework/zelk/LegacyPresetLoader.h"
#include "midi/ControllerMapFile.h"
#include "resources/ZelkResources.h"
#include "state/PresetFile.h"
#include "state/SharedPresets.h"

namespace {

constexpr GenericPlugin::InterfaceSize sizes[] = {{720, 335}, {775, 465}, {900, 540}, {1040, 624}, {1200, 720}};

} // namespace

ZelkPlugin::ZelkPlugin() : ZelkParameters(*static_cast<GenericPluginBase*>(this)) {
    init();
    initParameters();
    analyzer.addParametersTo(interfaceCollection());
    updateLatency();
    initState();
    // A preset may name an instance whose spectrum to show; who runs now is somebody else.
    if (analyzer.externalSpectrum.get() >= 0) {
        analyzer.externalSpectrum.setValue(static_cast<float>(externalSpectrumOff), 0);
        currentPreset().setModified(false);
    }
}

ZelkPlugin::~ZelkPlugin() {
    end();
}

std::span<const GenericPlugin::InterfaceSize> ZelkPlugin::interfaceSizes() const noexcept {
    return sizes;
}

std::unique_ptr<GenericPlugin::SharedSettings> ZelkPlugin::createSharedSettings() {
    return std::make_unique<ZelkSharedSettings>(info.version());
}

std::unique_ptr<GenericPlugin::Settings> ZelkPlugin::createSettings() {
    return std::make_unique<ZelkSettings>(*this);
}

void ZelkPlugin::afterParameterChange(std::int32_t id) {
    if (movesLatency(id))
        updateLatency();
}

void ZelkPlugin::updateLatency() {
    storeLatency(latencyAt(static_cast<double>(sampleRate())));
}

void ZelkPlugin::createGlobals() {
    setEmbeddedResources(zelkResources());
    GenericStatefulPlugin::createGlobals();
    addComponentPresets("Spectrum", ".spectrum");
}

bool ZelkPlugin::loadControllerMap() {
    return ControllerMapFile(dataFolder()).load(controllerMapping());
}

void ZelkPlugin::loadFactoryControllerMap() {
    ControllerMapFile::loadFactory(controllerMapping());
}

void ZelkPlugin::saveControllerMap() {
    static_cast<void>(ControllerMapFile(dataFolder()).save(controllerMapping()));
}

std::string ZelkPlugin::runPresetLoad(const std::string& path) {
    using Layout = LegacyPresetLoader::Layout;
    const std::string error = GenericStatefulPlugin::runPresetLoad(path);
    if (error.empty())
        return {};
    for (const Layout layout : {Layout::second, Layout::first}) {
        LegacyPresetLoader loader(*this, *this, presetParameters(), layout);
        if (!loader.load(*openPresetFile(path), LegacyPresetLoader::fileVersion,
                         LegacyPresetLoader::signatureOf(layout)))
            return {};
    }
    return error;
}
