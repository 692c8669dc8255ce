#include "framework/zelk/EQParameterSet.h"

#include "framework/zelk/EQParameterShapes.h"
#include "framework/zelk/ParameterHints.h"

#include <array>
#include <utility>

namespace {

constexpr ValueNames usedNames{"Unused,Used"};
constexpr ValueNames enabledNames{"Disabled,Enabled"};
constexpr ValueNames dynamicsNames{"Dynamics Disabled,Dynamics Enabled"};
constexpr ValueNames onOffNames{"Off,On"};
constexpr ValueNames placementNames{"Left,Right,Stereo,Mid,Side"};
constexpr ValueNames slopeNames{"6 dB/oct,12 dB/oct,18 dB/oct,24 dB/oct,30 dB/oct,36 dB/oct,48 dB/oct,72 dB/oct,"
                                "96 dB/oct,Brickwall"};

constexpr ValueNames shapeNames{"Bell,Low Shelf,Low Cut,High Shelf,High Cut,Notch,Band Pass,Tilt Shelf,Flat Tilt"};
constexpr std::array<FilterShape, 9> shapeByIndex{
    FilterShape::bell,  FilterShape::lowShelf, FilterShape::highPass,  FilterShape::highShelf, FilterShape::lowPass,
    FilterShape::notch, FilterShape::bandPass, FilterShape::tiltShelf, FilterShape::flatTilt};

constexpr ValueNames speakersNames{
    "All Speakers,All (excl. LFE),LFE,Center,L/R (Front),Lc/Rc (Front Center),Lss/Rss (Surround Side),"
    "Ls/Rs (Surround),Lsr/Rsr (Surround Rear),Cs or S (Center Surround),Lts/Rts (Top Surround),"
    "L/C/R (Front + Center),Lw/Rw (Wide),Ltf/Rtf (Top Surround Front),Ltr/Rtr (Top Surround Rear)"};
constexpr std::array<chl::SpeakerSet, 15> speakersByIndex{
    chl::SpeakerSet::all,          chl::SpeakerSet::allButLfe,
    chl::SpeakerSet::lfe,          chl::SpeakerSet::center,
    chl::SpeakerSet::leftRight,    chl::SpeakerSet::frontCenter,
    chl::SpeakerSet::surroundSide, chl::SpeakerSet::surround,
    chl::SpeakerSet::surroundRear, chl::SpeakerSet::centerSurround,
    chl::SpeakerSet::topSide,      chl::SpeakerSet::front,
    chl::SpeakerSet::wide,         chl::SpeakerSet::topFront,
    chl::SpeakerSet::topRear};
constexpr std::array<IndexRange::Limit, 1> speakersLimits{{{10, 0}}}; // those behind "Lts/Rts" came later

static_assert(slopeNames.count() == 10 && shapeNames.count() == 9 && speakersNames.count() == 15);

void initSwitch(IndexedPluginParameter<bool>& parameter, bool standard, const ValueNames& names,
                std::string_view hint) {
    parameter.setRange(0, 1, standard);
    parameter.setValueNames(names);
    parameter.setHint(hint);
}

} // namespace

std::int32_t EQParameterSet::ShapeParameter::iconIndex() const noexcept {
    switch (get()) {
    case FilterShape::lowPass:
        return 3;
    case FilterShape::highPass:
        return 5;
    case FilterShape::notch:
        return 6;
    default:
        return 1;
    }
}

EQParameterSet::EQParameterSet(GenericParameterOwner& owner, std::string name)
    : PluginParameterSet(owner, std::move(name), size) {}

void EQParameterSet::init() {
    initSwitch(used, false, usedNames, ParameterHints::used);
    initSwitch(enabled, true, enabledNames, ParameterHints::enabled);

    frequency.setRange(3.321928f, 14.872674f, 9.965784f); // 10, 30,000 and 1000 Hz
    frequency.setUnit(expFreqUnit);
    frequency.setHint(ParameterHints::frequency);
    gain.setRange(-30.0f, 30.0f, 0.0f);
    gain.setUnit(dbUnit);
    gain.setHint(ParameterHints::gain);
    dynamicRange.setRange(-30.0f, 30.0f, 0.0f);
    dynamicRange.setUnit(dbUnit);
    dynamicRange.setHint(ParameterHints::dynamicRange);

    initSwitch(dynamicsEnabled, true, dynamicsNames, ParameterHints::dynamicsEnabled);
    threshold.setRange(0.0f, 1.0f, 1.0f);
    shapeAsThreshold(threshold);
    threshold.setHint(ParameterHints::threshold);
    q.setRange(0.0f, 1.0f, 0.5f);
    shapeAsQ(q);
    q.setHint(ParameterHints::q);

    shape.setMapping(shapeByIndex);
    shape.setRange(0, 8, FilterShape::bell);
    shape.setValueNames(shapeNames);
    shape.setHint(ParameterHints::shape);
    slope.setRange(0, 9, FilterSlope::db12);
    slope.setValueNames(slopeNames);
    slope.setHint(ParameterHints::slope);
    stereoPlacement.setRange(0, 4, StereoPlacement::stereo);
    stereoPlacement.setValueNames(placementNames);
    stereoPlacement.setHint(ParameterHints::stereoPlacement);
    speakers.setMapping(speakersByIndex);
    speakers.setRange(0, 14, chl::SpeakerSet::allButLfe);
    speakers.setLimits(speakersLimits);
    speakers.setValueNames(speakersNames);
    speakers.setHint(ParameterHints::speakers);

    initSwitch(solo, false, enabledNames, ParameterHints::solo);
    solo.setAutomatable(false);
}

EQParameterSetExtension::EQParameterSetExtension(GenericParameterOwner& owner, std::string name)
    : PluginParameterSet(owner, std::move(name), size) {}

void EQParameterSetExtension::init() {
    initSwitch(externalSideChain, false, onOffNames, ParameterHints::externalSideChain);
}
