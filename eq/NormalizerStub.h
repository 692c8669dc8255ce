// Measures a signal against its own long-term level, so that a band can react without a threshold of its own.
// Threads: audio, except construction (main).
#pragma once

#include "base/Property.h"
#include "base/Realtime.h"
#include "eq/Follower.h"
#include "wave/BasicBlock.h"
#include "wave/Component.h"

#include <cstdint>

class NormalizerStub final : public wave::Component {
public:
    explicit NormalizerStub(wave::Environment& owner);

    Property<bool> decibels; // else linear

    // `flat`: all samples of the input are alike. Uses the first scratch block of the environment.
    void process(const wave::BasicBlock<float>& input, wave::BasicBlock<float>& output, std::int32_t count,
                 bool flat) noexcept REALTIME;
    void reset() noexcept REALTIME;

    // The signal has become another one: half a second on, its own level takes the place of the old reference. Nothing
    // happens while that is still under way or nothing was heard yet.
    void resynchronize() noexcept REALTIME;

    [[nodiscard]] bool isSilent() const noexcept REALTIME { return silent; } // the last output is one value

private:
    Follower primary;   // holds peaks and falls back slowly
    Follower secondary; // the same of the new signal
    bool silent = false;
    std::int32_t resyncCount = 0; // samples until the change
};
