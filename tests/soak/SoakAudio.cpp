#include "tests/soak/SoakAudio.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <stdexcept>

namespace {

constexpr std::uint32_t bandCount = 24;
constexpr std::uint64_t mostBlocks = 1500; // of one run: short blocks must not take for ever
constexpr float untouched = 12345.0f;      // what outputs hold that nobody has written

} // namespace

SoakAudio::SoakAudio(const clap_plugin* wanted, SoakRandom source) : plugin(wanted), random(source) {
    const auto* const params = static_cast<const clap_plugin_params*>(plugin->get_extension(plugin, CLAP_EXT_PARAMS));
    parameters.resize(params->count(plugin));
    for (std::uint32_t index = 0; index < parameters.size(); ++index)
        if (!params->get_info(plugin, index, &parameters[index]))
            throw std::runtime_error("a parameter without facts");
}

std::uint32_t SoakAudio::id(const std::string& name) const {
    const auto found = std::find_if(parameters.begin(), parameters.end(),
                                    [&](const clap_param_info& info) { return name == info.name; });
    if (found == parameters.end())
        throw std::runtime_error("no parameter " + name);
    return found->id;
}

void SoakAudio::prepare(double sampleRate, std::uint32_t longestBlock) {
    rate = sampleRate;
    maxFrames = longestBlock;
    fixedBlocks = random.chance(0.5);
    inPlace = random.chance(0.3);
    const auto* const ports =
        static_cast<const clap_plugin_audio_ports*>(plugin->get_extension(plugin, CLAP_EXT_AUDIO_PORTS));
    clap_audio_port_info info{};
    portChannels.clear();
    inputs.clear();
    for (std::uint32_t port = 0; port < ports->count(plugin, true) && ports->get(plugin, port, true, &info); ++port) {
        portChannels.push_back(info.channel_count);
        inputs.resize(inputs.size() + info.channel_count, std::vector<float>(maxFrames));
    }
    masks.assign(portChannels.size(), 0);
    if (!ports->get(plugin, 0, false, &info))
        throw std::runtime_error("no output port");
    outputs.assign(info.channel_count, std::vector<float>(maxFrames));
}

void SoakAudio::run(double seconds, const std::function<void()>& between) {
    plugin->start_processing(plugin);
    const std::uint64_t last = blocks + mostBlocks;
    for (auto left = static_cast<std::int64_t>(seconds * rate); left > 0 && blocks < last && fault.empty();) {
        const std::uint32_t frames = fixedBlocks ? maxFrames : 1 + random.below(maxFrames);
        runBlock(random.chance(0.002) ? 0 : frames);
        left -= frames;
        if (random.chance(0.004))
            plugin->reset(plugin);
        if (random.chance(0.004)) {
            plugin->stop_processing(plugin);
            plugin->start_processing(plugin);
        }
        between();
    }
    plugin->stop_processing(plugin);
}

void SoakAudio::addValue(ClapTestEvents& list, std::uint32_t time, const clap_param_info& parameter) {
    const double reach = random.chance(0.02) ? parameter.max_value - parameter.min_value : 0.0; // beyond the range
    double value = random.between(parameter.min_value - reach, parameter.max_value + reach);
    if (random.chance(0.2))
        value = random.chance(0.5) ? parameter.min_value : parameter.max_value;
    list.addValue(time, parameter.id, value);
    ++eventsSent;
}

// A mode or a resolution takes all kernels anew, which nothing but the kernels would be left to see for if it came as
// often as the rest.
void SoakAudio::addStorm(ClapTestEvents& list, std::uint32_t frames, std::uint32_t count) {
    const bool oneBand = random.chance(0.3);
    const std::uint32_t firstOfBand = id("Band " + std::to_string(1 + random.below(bandCount)) + " Used");
    for (std::uint32_t i = 0; i < count; ++i) {
        const auto time = static_cast<std::uint32_t>(std::uint64_t{frames} * i / count);
        if (random.chance(0.2)) {
            list.addMidi(time, static_cast<std::uint8_t>(random.bits()), static_cast<std::uint8_t>(random.bits()),
                         static_cast<std::uint8_t>(random.bits()));
            ++eventsSent;
            continue;
        }
        const std::uint32_t chosen =
            oneBand ? firstOfBand + random.below(12) : random.below(static_cast<std::uint32_t>(parameters.size()));
        const bool heavy = chosen == id("Processing Mode") || chosen == id("Processing Resolution");
        if (chosen < parameters.size() && (!heavy || random.chance(0.05)))
            addValue(list, time, parameters[chosen]);
    }
}

void SoakAudio::addSetting(ClapTestEvents& list) {
    list.addValue(0, id("Processing Mode"), random.below(3));
    list.addValue(0, id("Processing Resolution"), random.below(5));
    list.addValue(0, id("Receive Midi"), 0.0);
    list.addValue(0, id("Bypass"), 0.0);
    const double share = random.between(0.0, 1.0);
    for (std::uint32_t band = 1; band <= bandCount; ++band) {
        const std::uint32_t used = id("Band " + std::to_string(band) + " Used");
        list.addValue(0, used, random.chance(share) ? 1.0 : 0.0);
        if (random.chance(0.5))
            for (std::uint32_t further = 2; further < 12; ++further)
                addValue(list, 0, parameters[used + further]);
    }
}

void SoakAudio::fillInputs(std::uint32_t frames) {
    std::size_t first = 0;
    for (std::size_t port = 0; port < portChannels.size(); ++port) {
        const std::uint32_t kind = random.below(6);
        const double loudness = std::exp2(random.between(-20.0, 4.0));
        const double step = random.between(0.0, std::numbers::pi);
        for (std::size_t channel = first; channel < first + portChannels[port]; ++channel) {
            std::vector<float>& samples = inputs[channel];
            for (std::uint32_t i = 0; i < frames; ++i) {
                double value = 0.0; // kind 0: silence
                if (kind == 1)
                    value = loudness * std::sin(step * static_cast<double>(i));
                else if (kind == 2)
                    value = loudness;
                else if (kind == 3)
                    value = i % 97 == 0 ? loudness : 0.0;
                else if (kind == 4)
                    value = 1e-42 * loudness; // a denormal
                else if (kind == 5)
                    value = random.between(-loudness, loudness);
                samples[i] = static_cast<float>(value);
            }
        }
        first += portChannels[port];
        masks[port] = kind == 0 || kind == 2 ? ~std::uint64_t{0} : 0;
    }
}

void SoakAudio::runBlock(std::uint32_t frames) {
    fillInputs(frames);
    events.clear();
    if (blocks == 0 || random.chance(0.01))
        addSetting(events);
    if (random.chance(0.3))
        addStorm(events, frames, random.below(random.chance(0.05) ? 400 : 12));

    std::vector<float*> pointers;
    for (std::vector<float>& channel : inputs)
        pointers.push_back(channel.data());
    std::vector<clap_audio_buffer> ports(portChannels.size());
    std::size_t first = 0;
    for (std::size_t port = 0; port < ports.size(); first += portChannels[port++])
        ports[port] = {pointers.data() + first, nullptr, portChannels[port], 0, masks[port]};
    std::vector<float*> results;
    for (std::size_t channel = 0; channel < outputs.size(); ++channel) {
        std::fill_n(outputs[channel].begin(), frames, untouched);
        results.push_back(inPlace ? inputs[channel].data() : outputs[channel].data());
    }
    clap_audio_buffer output{results.data(), nullptr, static_cast<std::uint32_t>(results.size()), 0, 0};
    const bool sideChain = ports.size() > 1 && !random.chance(0.2);
    clap_process block{};
    block.frames_count = frames;
    block.audio_inputs = ports.data();
    block.audio_inputs_count = sideChain ? 2 : 1;
    block.audio_outputs = &output;
    block.audio_outputs_count = 1;
    block.in_events = events.list();
    block.out_events = taken.list();
    if (plugin->process(plugin, &block) == CLAP_PROCESS_ERROR)
        fault = "a block was refused";
    for (std::size_t channel = 0; inPlace && channel < outputs.size(); ++channel)
        std::copy_n(inputs[channel].begin(), frames, outputs[channel].begin());
    taken.values.clear();
    ++blocks;
    check(frames);
}

void SoakAudio::check(std::uint32_t frames) {
    for (std::size_t channel = 0; channel < outputs.size() && fault.empty(); ++channel)
        for (std::uint32_t i = 0; i < frames; ++i) {
            const float sample = outputs[channel][i];
            if (std::isfinite(sample) && sample != untouched)
                continue;
            fault = "channel " + std::to_string(channel) + " of " + std::to_string(outputs.size()) + " holds " +
                    std::to_string(sample) + " at frame " + std::to_string(i) + " of " + std::to_string(frames) +
                    " in block " + std::to_string(blocks) + " at " + std::to_string(rate) + " Hz";
            return;
        }
}
