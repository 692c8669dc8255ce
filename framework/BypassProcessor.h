// The outermost stage of an instance: the dry path, the fade between dry and wet, and rest when nothing sounds.
// Threads: audio, except the constructor (main).
#pragma once

#include "base/Realtime.h"
#include "framework/GenericPluginProcessor.h"
#include "wave/Delay.h"
#include "wave/FloatParameter.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

class GenericPluginProcessor::BypassProcessor {
public:
    static constexpr float fadeMs = 50.0f;

    explicit BypassProcessor(GenericPluginProcessor& processor);

    // Samples until the state may change by itself: no piece is longer. At least 1.
    std::size_t longestPiece() const noexcept REALTIME;

    // One piece of at most the maximal block. inputs and outputs are those of the whole span, position is where the
    // piece starts in them. Clears the flag outputSilent when the piece may sound. Where gains in a row have
    // overflowed, the wet signal of the piece is silence and the graph begins anew: what broke would live on in its
    // memory.
    void process(const Buffers& buffers, std::size_t position, std::size_t count,
                 std::uint32_t& flags) noexcept REALTIME;

    void setBypassed(bool wanted) noexcept REALTIME; // fades; a return waits until the wet path is valid
    void jump() noexcept REALTIME;                   // at the next piece the fade stands where it is wanted
    void updateDelays() noexcept REALTIME;           // allocates when the latency has changed
    void clear() noexcept REALTIME;                  // the dry signal forgets

private:
    void advanceWait(std::size_t count) noexcept REALTIME;
    bool maySound(std::uint32_t flags) noexcept REALTIME; // false: the input is silent and the tail is over
    void writeOutputs(const Buffers& buffers, std::size_t position, std::size_t count,
                      const wave::BasicBlock<float>& mix, bool fullyBypassed) noexcept REALTIME;
    // The host's samples of the piece, at most a maximal block. An instrument has no input: silence.
    const float* inputOf(std::size_t channel, const Buffers& buffers, std::size_t position) const noexcept REALTIME;
    // Where the dry signal of the piece stands: the input, or out, into which the delay was read.
    const float* dryOf(std::size_t channel, const float* input, float* out, std::size_t count) noexcept REALTIME;
    [[nodiscard]] bool endsFinite(std::size_t count) const noexcept REALTIME; // the wet signal
    static bool isSilent(const Buffers& buffers, std::size_t position, std::size_t count) noexcept REALTIME;
    float wantedFade() const noexcept REALTIME { return bypassed ? 1.0f : 0.0f; }

    GenericPluginProcessor& owner;
    FloatParameter fade;                              // 0 wet, 1 dry
    std::vector<std::unique_ptr<wave::Delay>> delays; // one a channel while there is latency
    std::vector<const float*> wet;                    // of the present piece
    std::int32_t delayLength = 0;                     // samples, that of the delays
    std::int32_t waitSamples = 0;
    std::int32_t tailSamples = -1; // until rest; -1: not counting
    bool bypassed = false;
    bool waiting = false;
    bool jumpWanted = false;
    bool graphSkipped = false; // in the last piece
};
