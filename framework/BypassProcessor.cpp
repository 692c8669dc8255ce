#include "framework/BypassProcessor.h"

#include "base/FloatTolerance.h"
#include "wave/SoundCopy.h"

#include <algorithm>
#include <cmath>
#include <limits>

GenericPluginProcessor::BypassProcessor::BypassProcessor(GenericPluginProcessor& processor)
    : owner(processor), fade(processor.environment(), 0.0f), wet(processor.channelCount(), nullptr) {
    delays.reserve(processor.channelCount());
}

void GenericPluginProcessor::BypassProcessor::setBypassed(bool wanted) noexcept REALTIME {
    if (wanted == bypassed)
        return;
    bypassed = wanted;
    waitSamples = owner.latency();
    // While the graph never stopped, its output is valid and the fade just turns round.
    waiting = !wanted && graphSkipped;
    if (waiting)
        owner.environment().resetAll();
    else
        fade.setValue(wantedFade(), fadeMs);
}

void GenericPluginProcessor::BypassProcessor::jump() noexcept REALTIME {
    jumpWanted = true;
}

void GenericPluginProcessor::BypassProcessor::updateDelays() noexcept REALTIME {
    if (owner.latency() == delayLength)
        return;
    const RealtimePermit permit{"dry delay replaced"};
    trustedRealtime([this] {
        delays.clear();
        delayLength = owner.latency();
        if (delayLength > 0)
            for (std::size_t channel = 0; channel < owner.channelCount(); ++channel)
                delays.push_back(std::make_unique<wave::Delay>(owner.environment(), delayLength));
    });
}

void GenericPluginProcessor::BypassProcessor::process(const Buffers& buffers, std::size_t position, std::size_t count,
                                                      std::uint32_t& flags) noexcept REALTIME {
    updateDelays();
    owner.environment().beginCycle();
    advanceWait(count);

    const auto samples = static_cast<std::int32_t>(count);
    const wave::BasicBlock<float>& mix = fade.read(samples);
    for (std::size_t channel = 0; channel < delays.size(); ++channel)
        delays[channel]->write(inputOf(channel, buffers, position), samples);

    const bool fullyBypassed = !waiting && mix.isConstant != 0 && nearlyEqual(mix.data()[0], 1.0f);
    const bool runs = !fullyBypassed && maySound(flags);
    bool broken = false;
    if (runs) {
        owner.runGraph(wet, samples);
        broken = !endsFinite(count);
        if (tailSamples > 0) {
            tailSamples = std::max(tailSamples - samples, 0);
            if (tailSamples == 0 && !owner.environment().allAtRest())
                tailSamples = 1;
        }
        flags &= ~outputSilent;
    } else {
        for (std::size_t channel = 0; channel < wet.size(); ++channel)
            wet[channel] = inputOf(channel, buffers, position);
    }
    graphSkipped = !runs;
    owner.environment().runCycle(samples, graphSkipped);
    if (broken)
        owner.environment().resetAll();
    writeOutputs(buffers, position, count, mix, fullyBypassed);

    if (fullyBypassed && !delays.empty() && (flags & outputSilent) != 0 && !isSilent(buffers, position, count))
        flags &= ~outputSilent; // the dry tail of the delay still sounds
}

void GenericPluginProcessor::BypassProcessor::advanceWait(std::size_t count) noexcept REALTIME {
    if (jumpWanted) {
        // To the wanted state and not to the fade's target: during a wait that target is still the old state.
        jumpWanted = false;
        waiting = false;
        fade.setValue(wantedFade(), 0.0f);
    } else if (waiting && waitSamples <= 0) {
        waiting = false;
        fade.restartRamp(0.0f, fadeMs); // without latency this is the sample of the reset
    } else if (waiting) {
        waitSamples -= static_cast<std::int32_t>(count);
    }
}

// What broke in a memory is in every sample from there on, so the last one tells. Single samples that overflow and
// leave no trace are taken out where the output is written.
bool GenericPluginProcessor::BypassProcessor::endsFinite(std::size_t count) const noexcept REALTIME {
    return std::all_of(wet.begin(), wet.end(),
                       [count](const float* samples) { return std::isfinite(samples[count - 1]); });
}

std::size_t GenericPluginProcessor::BypassProcessor::longestPiece() const noexcept REALTIME {
    return waiting && waitSamples > 0 ? static_cast<std::size_t>(waitSamples) : std::numeric_limits<std::size_t>::max();
}

bool GenericPluginProcessor::BypassProcessor::maySound(std::uint32_t flags) noexcept REALTIME {
    if ((flags & inputSilent) == 0) {
        tailSamples = -1;
    } else if (tailSamples == -1) {
        tailSamples = owner.tailLength();
        if (tailSamples != -1)
            tailSamples += owner.latency();
    }
    return tailSamples != 0;
}

const float* GenericPluginProcessor::BypassProcessor::inputOf(std::size_t channel, const Buffers& buffers,
                                                              std::size_t position) const noexcept REALTIME {
    return owner.isInstrument() ? owner.environment().zeroBlock.data() : buffers.inputs[channel] + position;
}

const float* GenericPluginProcessor::BypassProcessor::dryOf(std::size_t channel, const float* input, float* out,
                                                            std::size_t count) noexcept REALTIME {
    if (delays.empty())
        return input;
    const auto samples = static_cast<std::int32_t>(count);
    delays[channel]->read(delayLength, out, samples);
    wave::copySound(out, samples, out); // what the host sent long ago must not be heard behind its end
    return out;
}

void GenericPluginProcessor::BypassProcessor::writeOutputs(const Buffers& buffers, std::size_t position,
                                                           std::size_t count, const wave::BasicBlock<float>& mix,
                                                           bool fullyBypassed) noexcept REALTIME {
    const float* const m = mix.data();
    const bool constant = mix.isConstant != 0;
    const bool onlyWet = constant && nearlyZero(m[0]);
    for (std::size_t channel = 0; channel < buffers.outputs.size(); ++channel) {
        float* const out = buffers.outputs[channel] + position;
        const float* const wetSamples = wet[channel];
        if (onlyWet) {
            wave::copySound(wetSamples, static_cast<std::int32_t>(count), out);
            continue;
        }
        const float* const dry = dryOf(channel, inputOf(channel, buffers, position), out, count);
        if (fullyBypassed) {
            if (out != dry)
                std::copy_n(dry, count, out);
        } else if (constant) {
            const float amount = m[0];
            for (std::size_t i = 0; i < count; ++i)
                out[i] = (dry[i] - wetSamples[i]) * amount + wetSamples[i];
            wave::copySound(out, static_cast<std::int32_t>(count), out);
        } else {
            for (std::size_t i = 0; i < count; ++i)
                out[i] = (dry[i] - wetSamples[i]) * m[i] + wetSamples[i];
            wave::copySound(out, static_cast<std::int32_t>(count), out);
        }
    }
}

bool GenericPluginProcessor::BypassProcessor::isSilent(const Buffers& buffers, std::size_t position,
                                                       std::size_t count) noexcept REALTIME {
    for (float* const output : buffers.outputs)
        for (std::size_t i = position; i < position + count; ++i)
            if (!nearlyZero(output[i]))
                return false;
    return true;
}

void GenericPluginProcessor::BypassProcessor::clear() noexcept REALTIME {
    for (const std::unique_ptr<wave::Delay>& delay : delays)
        delay->clear();
}
