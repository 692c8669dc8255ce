// Every automatable and stored value of the product. Both sides of an instance have a complete set of their own; the
// order of the members is the order of the ids, which hosts and saved projects rely on.
// Threads: as those of parameters.
#pragma once

#include "base/Realtime.h"
#include "eq/ProcessingTypes.h"
#include "framework/FloatPluginParameter.h"
#include "framework/GenericPluginBase.h"
#include "framework/IndexedPluginParameter.h"
#include "framework/StereoPanParameter.h"
#include "framework/zelk/AnalyzerParameterSet.h"
#include "framework/zelk/EQParameterSet.h"
#include "framework/zelk/ZelkEnumerations.h"
#include "framework/zelk/ZelkInit.h"

#include <cstdint>

class ZelkParameters : public ZelkInit {
private:
    GenericPluginBase* base; // stands first: the parameters below register with it

public:
    static constexpr std::int32_t total = 358;

    explicit ZelkParameters(GenericPluginBase& plugin);
    ZelkParameters(const ZelkParameters&) = delete;
    ZelkParameters& operator=(const ZelkParameters&) = delete;

    // Ranges, defaults, names of values, hints; then all values equal their defaults and nobody was told. The end of
    // the owner's construction.
    void initParameters();

    // [any] Samples by which the graph delays the signal with these values, and whether a change of this id (-1: of
    // many) can alter that.
    std::int32_t latencyAt(double sampleRate) const noexcept REALTIME;
    bool movesLatency(std::int32_t id) const noexcept REALTIME;

    EQParameterSetArray bands;
    IndexedPluginParameter<ProcessingMode> processingMode{base, "Processing Mode"};
    IndexedPluginParameter<ProcessingResolution> processingResolution{base, "Processing Resolution"};
    FloatPluginParameter gainScale{base, "Gain Scale"};
    FloatPluginParameter outputLevel{base, "Output Level"};
    StereoPanParameter outputPan{base, "Output Pan"};
    IndexedPluginParameter<ChannelMode> outputPanMode{base, "Output Pan Mode"};
    IndexedPluginParameter<bool> bypass{base, "Bypass"};
    IndexedPluginParameter<bool> outputInvertPhase{base, "Output Invert Phase"};
    IndexedPluginParameter<bool> autoGain{base, "Auto Gain"};
    AnalyzerParameterSet analyzer;
    IndexedPluginParameter<DisplayRange> displayRange{base, "Display Range"};
    IndexedPluginParameter<GenericPluginBase::MidiState> receiveMidi{base, "Receive Midi"};
    FloatPluginParameter soloGain{base, "Solo Gain"}; // dB
    EQParameterSetExtensionArray extensions;

protected:
    ~ZelkParameters();
};
