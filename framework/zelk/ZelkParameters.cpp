#include "framework/zelk/ZelkParameters.h"

#include "base/ReleaseAssert.h"
#include "framework/zelk/BandPlacement.h"
#include "framework/zelk/EQParameterShapes.h"
#include "framework/zelk/KernelSizes.h"
#include "framework/zelk/ParameterHints.h"

namespace {

constexpr ValueNames modeNames{"Zero Latency,Natural Phase,Linear Phase"};
constexpr ValueNames resolutionNames{"Low,Medium,High,Very High,Maximum"};
constexpr ValueNames panModeNames{"Left/Right,Mid/Side"};
constexpr ValueNames bypassNames{"Not Bypassed,Bypassed"};
constexpr ValueNames invertNames{"Normal,Inverted"};
constexpr ValueNames onOffNames{"Off,On"};
constexpr ValueNames displayRangeNames{"3 dB,6 dB,12 dB,30 dB"};
constexpr ValueNames midiNames{"Enabled,Disabled"};

template <typename T>
void initStepped(IndexedPluginParameter<T>& parameter, std::int32_t highest, T standard, const ValueNames& names,
                 std::string_view hint) {
    parameter.setRange(0, highest, standard);
    parameter.setValueNames(names);
    parameter.setHint(hint);
}

GenericPluginBase* withRoom(GenericPluginBase& plugin) {
    plugin.parameters().reserve(ZelkParameters::total);
    return &plugin;
}

} // namespace

ZelkParameters::ZelkParameters(GenericPluginBase& plugin)
    : ZelkInit(plugin), base(withRoom(plugin)), bands(plugin), analyzer(plugin), extensions(plugin) {
    release_assert(plugin.parameterCount() == total);
    plugin.ownParameters = {&receiveMidi, &bypass};
}

ZelkParameters::~ZelkParameters() {
    base->ownParameters = {};
}

void ZelkParameters::initParameters() {
    bands.init();

    initStepped(processingMode, 2, ProcessingMode::zeroLatency, modeNames, ParameterHints::processingMode);
    processingMode.setAutomatable(false);
    initStepped(processingResolution, 4, ProcessingResolution::medium, resolutionNames,
                ParameterHints::processingResolution);
    processingResolution.setAutomatable(false);
    gainScale.setRange(0.0f, 2.0f, 1.0f);
    shapeAsGainScale(gainScale);
    gainScale.setHint(ParameterHints::gainScale);
    outputLevel.setRange(-1.0f, 1.0f, 0.0f);
    shapeAsOutputLevel(outputLevel);
    outputLevel.setHint(ParameterHints::outputLevel);
    outputPan.setRange(-1.0f, 1.0f, 0.0f);
    outputPan.setChannelMode(&outputPanMode);
    outputPan.setHint(ParameterHints::outputPan);
    initStepped(outputPanMode, 1, ChannelMode::leftRight, panModeNames, ParameterHints::outputPanMode);
    initStepped(bypass, 1, false, bypassNames, ParameterHints::bypass);
    initStepped(outputInvertPhase, 1, false, invertNames, ParameterHints::outputInvertPhase);
    initStepped(autoGain, 1, false, onOffNames, ParameterHints::autoGain);

    analyzer.init();

    initStepped(displayRange, 3, DisplayRange::db12, displayRangeNames, ParameterHints::displayRange);
    displayRange.setAutomatable(false);
    initStepped(receiveMidi, 1, GenericPluginBase::MidiState::enabled, midiNames, ParameterHints::receiveMidi);
    soloGain.setRange(-20.0f, 20.0f, 0.0f);
    soloGain.setHint(ParameterHints::soloGain);
    soloGain.setAutomatable(false);

    extensions.init();
}

std::int32_t ZelkParameters::latencyAt(double sampleRate) const noexcept REALTIME {
    return processingLatency(processingMode.get(), processingResolution.get(), sampleRate, chainLayout(bands).count());
}

bool ZelkParameters::movesLatency(std::int32_t id) const noexcept REALTIME {
    if (id == -1 || id == processingMode.id() || id == processingResolution.id() || anyBandUsed(bands))
        return true;
    const std::int32_t band = trustedRealtime([&] { return bands.setIndexForId(id); });
    return band >= 0 && id == bands.set(band).stereoPlacement.id();
}
