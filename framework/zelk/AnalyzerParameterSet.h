// The settings of the spectrum display, in the order of their ids. A preset leaves them alone.
// Threads: as those of parameters.
#pragma once

#include "framework/IndexedPluginParameter.h"
#include "framework/PluginParameterSet.h"
#include "framework/zelk/ZelkEnumerations.h"

#include <cstddef>
#include <cstdint>

class AnalyzerParameterSet final : public PluginParameterSet {
public:
    static constexpr std::size_t size = 10;

    explicit AnalyzerParameterSet(GenericParameterOwner& owner);

    void init() override;

    IndexedPluginParameter<bool> showPre{this, " Show Pre-Processing"};
    IndexedPluginParameter<bool> showPost{this, " Show Post-Processing"};
    IndexedPluginParameter<std::int32_t> externalSpectrum{this, " External Spectrum"}; // an instance id from 0 on
    IndexedPluginParameter<AnalyzerRange> range{this, " Range"};
    IndexedPluginParameter<AnalyzerResolution> resolution{this, " Resolution"};
    IndexedPluginParameter<AnalyzerSpeed> speed{this, " Speed"};
    IndexedPluginParameter<AnalyzerTilt> tilt{this, " Tilt"};
    IndexedPluginParameter<bool> freeze{this, " Freeze"};
    IndexedPluginParameter<bool> showCollisions{this, " Show Collisions"};
    IndexedPluginParameter<bool> spectrumGrab{this, "Spectrum Grab"}; // without the name of the group
};
