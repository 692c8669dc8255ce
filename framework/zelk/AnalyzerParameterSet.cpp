#include "framework/zelk/AnalyzerParameterSet.h"

#include "framework/zelk/ParameterHints.h"

namespace {

constexpr ValueNames enabledNames{"Disabled,Enabled"};
constexpr ValueNames onOffNames{"Off,On"};
constexpr ValueNames rangeNames{"60 dB,90 dB,120 dB"};
constexpr ValueNames resolutionNames{"Low,Medium,High,Maximum"};
constexpr ValueNames speedNames{"Very Slow,Slow,Medium,Fast,Very Fast"};
constexpr ValueNames tiltNames{"0 dB/oct,1.5 dB/oct,3 dB/oct,4.5 dB/oct,6 dB/oct"};

template <typename T>
void initDisplay(IndexedPluginParameter<T>& parameter, std::int32_t highest, T standard, const ValueNames& names,
                 std::string_view hint) {
    parameter.setRange(0, highest, standard);
    parameter.setValueNames(names);
    parameter.setHint(hint);
    parameter.setAutomatable(false);
}

} // namespace

AnalyzerParameterSet::AnalyzerParameterSet(GenericParameterOwner& owner)
    : PluginParameterSet(owner, "Analyzer", size) {}

void AnalyzerParameterSet::init() {
    initDisplay(showPre, 1, true, enabledNames, ParameterHints::analyzerPre);
    initDisplay(showPost, 1, true, enabledNames, ParameterHints::analyzerPost);
    externalSpectrum.setRange(externalSpectrumSideChain, 65536, externalSpectrumOff);
    externalSpectrum.setHint(ParameterHints::analyzerExternal);
    externalSpectrum.setAutomatable(false);
    initDisplay(range, 2, AnalyzerRange::db90, rangeNames, ParameterHints::analyzerRange);
    initDisplay(resolution, 3, AnalyzerResolution::high, resolutionNames, ParameterHints::analyzerResolution);
    initDisplay(speed, 4, AnalyzerSpeed::medium, speedNames, ParameterHints::analyzerSpeed);
    initDisplay(tilt, 4, AnalyzerTilt::db4_5, tiltNames, ParameterHints::analyzerTilt);
    initDisplay(freeze, 1, false, onOffNames, ParameterHints::analyzerFreeze);
    initDisplay(showCollisions, 1, true, enabledNames, ParameterHints::analyzerCollisions);
    initDisplay(spectrumGrab, 1, true, enabledNames, ParameterHints::spectrumGrab);
}
