// The parameters of one band, in the order of their ids.
// Threads: as those of parameters.
#pragma once

#include "eq/FilterTypes.h"
#include "eq/ProcessingTypes.h"
#include "framework/FloatPluginParameter.h"
#include "framework/IndexedPluginParameter.h"
#include "framework/ParameterSetArray.h"
#include "framework/PluginParameterSet.h"
#include "framework/chl/Layouts.h"

#include <cstddef>
#include <cstdint>
#include <string>

class EQParameterSet final : public PluginParameterSet {
public:
    class ShapeParameter final : public IndexedPluginParameter<FilterShape> {
    public:
        using IndexedPluginParameter<FilterShape>::IndexedPluginParameter;
        std::int32_t iconIndex() const noexcept override;
    };

    class BandEnabledParameter final : public IndexedPluginParameter<bool> {
    public:
        using IndexedPluginParameter<bool>::IndexedPluginParameter;
        std::int32_t iconIndex() const noexcept override { return get() ? 7 : 8; }
    };

    static constexpr std::size_t size = 13;

    EQParameterSet(GenericParameterOwner& owner, std::string name);

    void init() override;

    IndexedPluginParameter<bool> used{this, " Used"};
    BandEnabledParameter enabled{this, " Enabled"};
    FloatPluginParameter frequency{this, " Frequency"}; // log2 of Hz
    FloatPluginParameter gain{this, " Gain"};           // dB
    FloatPluginParameter dynamicRange{this, " Dynamic Range"};
    IndexedPluginParameter<bool> dynamicsEnabled{this, " Dynamics Enabled"};
    FloatPluginParameter threshold{this, " Threshold"};
    FloatPluginParameter q{this, " Q"};
    ShapeParameter shape{this, " Shape"};
    IndexedPluginParameter<FilterSlope> slope{this, " Slope"};
    IndexedPluginParameter<StereoPlacement> stereoPlacement{this, " Stereo Placement"};
    IndexedPluginParameter<chl::SpeakerSet> speakers{this, " Speakers"};
    IndexedPluginParameter<bool> solo{this, " Solo"};
};

// What bands got after their first 13 parameters were laid down in saved projects.
class EQParameterSetExtension final : public PluginParameterSet {
public:
    static constexpr std::size_t size = 1;

    EQParameterSetExtension(GenericParameterOwner& owner, std::string name);

    void init() override;

    IndexedPluginParameter<bool> externalSideChain{this, " External Side Chain"};
};

inline constexpr std::int32_t bandCount = 24;

class EQParameterSetArray final : public ParameterSetArray<EQParameterSet> {
public:
    explicit EQParameterSetArray(GenericParameterOwner& owner) : ParameterSetArray(owner, "Band", bandCount) {}
};

class EQParameterSetExtensionArray final : public ParameterSetArray<EQParameterSetExtension> {
public:
    explicit EQParameterSetExtensionArray(GenericParameterOwner& owner) : ParameterSetArray(owner, "Band", bandCount) {}
};
