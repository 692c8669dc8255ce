#include "host/ClapAudioBlock.h"

#include <algorithm>

void ClapAudioBlock::setShape(std::span<const clap_audio_port_info> inputPorts, std::uint32_t outputChannels) {
    portChannels.clear();
    inputCount = 0;
    for (const clap_audio_port_info& port : inputPorts) {
        portChannels.push_back(port.channel_count);
        inputCount += port.channel_count;
    }
    inputCount = std::min(inputCount, channelLimit);
    outputCount = std::min<std::size_t>(outputChannels, channelLimit);
}

void ClapAudioBlock::prepare(std::uint32_t frames) {
    const std::uint32_t length = std::min(frames, longestPrepared);
    silence.assign(length, 0.0f);
    nowhere.assign(length, 0.0f);
}

void ClapAudioBlock::begin(const clap_process& block) noexcept REALTIME {
    beginInputs(block);
    beginOutputs(block);
}

void ClapAudioBlock::beginInputs(const clap_process& block) noexcept REALTIME {
    silent = true;
    complete = true;
    std::size_t index = 0;
    for (std::size_t port = 0; port < portChannels.size(); ++port) {
        const clap_audio_buffer* const given =
            block.audio_inputs != nullptr && port < block.audio_inputs_count ? &block.audio_inputs[port] : nullptr;
        for (std::uint32_t channel = 0; channel < portChannels[port] && index < inputCount; ++channel, ++index) {
            const float* const samples = given != nullptr && given->data32 != nullptr && channel < given->channel_count
                                             ? given->data32[channel]
                                             : nullptr;
            if (samples == nullptr) {
                inputs[index] = silence.data();
                complete = false;
                continue;
            }
            inputs[index] = samples;
            const bool constant = channel < 64 && (given->constant_mask >> channel & 1) != 0;
            silent = silent && constant && block.frames_count > 0 && samples[0] == 0.0f;
        }
    }
}

void ClapAudioBlock::beginOutputs(const clap_process& block) noexcept REALTIME {
    const clap_audio_buffer* const given =
        block.audio_outputs != nullptr && block.audio_outputs_count > 0 ? block.audio_outputs : nullptr;
    for (std::size_t channel = 0; channel < outputCount; ++channel) {
        float* const samples = given != nullptr && given->data32 != nullptr && channel < given->channel_count
                                   ? given->data32[channel]
                                   : nullptr;
        outputs[channel] = samples != nullptr ? samples : nowhere.data();
    }
}

void ClapAudioBlock::advance(std::size_t frames) noexcept REALTIME {
    for (const float*& input : std::span(inputs).first(inputCount))
        if (input != silence.data())
            input += frames;
    for (float*& output : std::span(outputs).first(outputCount))
        if (output != nowhere.data())
            output += frames;
}

// Only at the end of a block: a host may have laid them over inputs.
void ClapAudioBlock::silenceFurtherOutputs(const clap_process& block) const noexcept REALTIME {
    if (block.audio_outputs == nullptr || block.audio_outputs_count == 0 || block.audio_outputs[0].data32 == nullptr)
        return;
    const clap_audio_buffer& given = block.audio_outputs[0];
    for (std::size_t channel = outputCount; channel < given.channel_count; ++channel)
        if (given.data32[channel] != nullptr)
            std::fill_n(given.data32[channel], block.frames_count, 0.0f);
}

GenericPluginProcessor::Buffers ClapAudioBlock::buffers() noexcept REALTIME {
    return {std::span<const float* const>(inputs.data(), inputCount),
            std::span<float* const>(outputs.data(), outputCount)};
}
