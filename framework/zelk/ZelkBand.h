// What all channels of one band share: its gain, its present design, and what it weighs in the auto gain.
// Threads: audio, except construction (main).
#pragma once

#include "base/Property.h"
#include "base/Realtime.h"
#include "eq/AnalogFilterPrototype.h"
#include "framework/zelk/LoudnessCurve.h"
#include "framework/zelk/ZelkProcessor.h"
#include "wave/FloatParameterSource.h"
#include "wave/Mixer.h"

#include <cstdint>

class EQParameterSet;
class EQParameterSetExtension;

class ZelkProcessor::Band final : public PropertyOwner {
public:
    Band(ZelkProcessor& processor, std::int32_t index);
    Band(const Band&) = delete;
    Band& operator=(const Band&) = delete;

    void updateDesign(float sampleRate) noexcept REALTIME; // and the curve, while the auto gain wants it
    void propertyChanged(AbstractProperty& changed) noexcept override;

    [[nodiscard]] bool concernedBy(std::int32_t id) const noexcept REALTIME; // one of this band's parameters, or -1

    const EQParameterSet& parameters;
    const EQParameterSetExtension& extension;
    Property<float> gainScale; // factor
    FloatParameterSource gain; // dB, as set
    Mixer gainSum;             // dB, what the filters of the band follow
    AnalogFilterPrototype prototype;
    loudness::Curve squaredMagnitudes; // on the grid of the auto gain

private:
    ZelkProcessor& owner;
};
