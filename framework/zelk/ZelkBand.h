// What all channels of one band share: its gain, how it moves, its present design, and the responses that kernels and
// the auto gain read of it. Threads: audio, except construction (main).
#pragma once

#include "base/Property.h"
#include "base/Realtime.h"
#include "eq/AnalogFilterPrototype.h"
#include "eq/EQResponses.h"
#include "framework/zelk/BandDynamics.h"
#include "framework/zelk/LoudnessCurve.h"
#include "framework/zelk/ZelkProcessor.h"
#include "wave/FloatParameterSource.h"
#include "wave/Mixer.h"

#include <cstdint>
#include <memory>

class EQParameterSet;
class EQParameterSetExtension;

class ZelkProcessor::Band final : public PropertyOwner {
public:
    Band(ZelkProcessor& processor, std::int32_t index);
    Band(const Band&) = delete;
    Band& operator=(const Band&) = delete;

    [[nodiscard]] bool concernedBy(std::int32_t id) const noexcept REALTIME; // one of this band's parameters, or -1
    [[nodiscard]] bool isElliptic() const noexcept REALTIME;                 // its sections stay as they are

    std::int32_t sectionCount() const noexcept REALTIME { return prototype.sectionCount; } // of the present design
    std::uint32_t designVersion() const noexcept REALTIME { return version; }              // another with each design

    void setDynamic(bool wanted) noexcept REALTIME; // the gain follows the compander, gliding over
    void createResponses();                         // those of the processing mode, for the present grid

    // The design and what is derived from it. `position`, in this cycle, is where a kernel takes the moving gain of
    // Linear Phase; -1: the gain that it took last.
    void updateDesign(std::int32_t position) noexcept REALTIME;

    // Of Linear Phase, ahead of the kernels that are made in this cycle.
    void pullDynamicGain(std::int32_t count) noexcept REALTIME;

    void propertyChanged(AbstractProperty& changed) noexcept override;

    const EQParameterSet& parameters;
    const EQParameterSetExtension& extension;
    Property<float> gainScale; // factor
    FloatParameterSource gain; // dB, as set
    BandDynamics dynamics;
    Mixer gainSum;                                          // dB, what the filters of the band follow
    loudness::Curve squaredMagnitudes;                      // on the grid of the auto gain
    std::unique_ptr<EQAnalogResponse> analogResponse;       // in Natural Phase
    std::unique_ptr<EQBiquadResponse> biquadResponse;       // in Natural Phase
    std::unique_ptr<EQMagnitudeResponse> magnitudeResponse; // in Linear Phase

private:
    void design(float gainDb, AnalogFilterPrototype& target) const noexcept REALTIME;
    void updateCurve() noexcept REALTIME;
    void updateWeights() noexcept REALTIME;

    ZelkProcessor& owner;
    AnalogFilterPrototype prototype;
    std::uint32_t version = 0;                            // wraps
    AnalogFilterPrototype autoGainPrototype;              // of a dynamic band: at half its range
    const wave::BasicBlock<float>* dynamicGain = nullptr; // dB, of this cycle; in Linear Phase only
    float kernelOffset = 0.0f;                            // dB, of the dynamic gain in the newest kernel
};
