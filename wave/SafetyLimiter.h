// Computes the gain that brings a signal down to a ceiling. It has no look-ahead: the gain comes while the attack of a
// sudden sound is already heard.
// Threads: those of wave::Producer.
#pragma once

#include "base/Property.h"
#include "wave/Capacitor.h"
#include "wave/Detector.h"
#include "wave/Filter.h"
#include "wave/InputForwarder.h"
#include "wave/PeakHold.h"

#include <cstdint>

// The output is the gain, 1 and below, for somebody else to apply.
class SafetyLimiter final : public wave::Filter, public PropertyOwner {
public:
    explicit SafetyLimiter(wave::Environment& owner);

    Property<float> attack;  // ms
    Property<float> hold;    // ms
    Property<float> release; // ms
    Property<float> ceiling; // dB

    void filter(const wave::BasicBlock<float>& inputBlock, wave::BasicBlock<float>& outputBlock, std::int32_t count,
                std::uint32_t mode) noexcept REALTIME override;

    void propertyChanged(AbstractProperty& changed) override;

private:
    wave::InputForwarder forwarder;
    Detector detector;
    PeakHold peakHold;
    Capacitor capacitor;
};
