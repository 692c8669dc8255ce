#include "tools/host/Ports.h"

#include "tools/host/Failure.h"
#include "tools/host/TextTools.h"

#include <algorithm>
#include <string_view>

namespace {

std::string textOf(const char* text) {
    return text == nullptr ? std::string() : std::string(text);
}

template <std::size_t size>
std::string textOf(const char (&text)[size]) {
    return {text, std::find(text, text + size, '\0')};
}

std::vector<AudioPort> portsOfSide(const PluginInstance& instance, bool inputs) {
    std::vector<AudioPort> found;
    const auto* table = instance.extension<clap_plugin_audio_ports>(CLAP_EXT_AUDIO_PORTS);
    const std::uint32_t count = table == nullptr ? 0 : table->count(instance.clap(), inputs);
    for (std::uint32_t i = 0; i < count; ++i) {
        clap_audio_port_info info{};
        if (!table->get(instance.clap(), i, inputs, &info))
            throw Failure("the plug-in does not describe its audio port " + std::to_string(i));
        found.push_back(
            {info.id, textOf(info.name), info.flags, info.channel_count, textOf(info.port_type), info.in_place_pair});
    }
    return found;
}

void select(PluginInstance& instance, const PortConfig& config) {
    const auto* table = instance.extension<clap_plugin_audio_ports_config>(CLAP_EXT_AUDIO_PORTS_CONFIG);
    if (!table->select(instance.clap(), config.id))
        throw Failure("the plug-in refused its port configuration \"" + config.name + "\"");
    instance.serve();
}

// What there is, one channel count once: "1 (Mono), 2 (Stereo)".
std::string channelChoice(const std::vector<PortConfig>& configs) {
    std::string text;
    std::vector<std::uint32_t> seen;
    for (const PortConfig& config : configs) {
        if (std::find(seen.begin(), seen.end(), config.inputChannels) != seen.end())
            continue;
        seen.push_back(config.inputChannels);
        text += (text.empty() ? "" : ", ") + std::to_string(config.inputChannels) + " (" + config.name + ")";
    }
    return text;
}

} // namespace

AudioPorts audioPorts(const PluginInstance& instance) {
    return {portsOfSide(instance, true), portsOfSide(instance, false)};
}

std::vector<NotePort> notePorts(const PluginInstance& instance, bool inputs) {
    std::vector<NotePort> found;
    const auto* table = instance.extension<clap_plugin_note_ports>(CLAP_EXT_NOTE_PORTS);
    const std::uint32_t count = table == nullptr ? 0 : table->count(instance.clap(), inputs);
    for (std::uint32_t i = 0; i < count; ++i) {
        clap_note_port_info info{};
        if (table->get(instance.clap(), i, inputs, &info))
            found.push_back({info.id, textOf(info.name), info.supported_dialects, info.preferred_dialect});
    }
    return found;
}

std::vector<PortConfig> portConfigs(const PluginInstance& instance) {
    std::vector<PortConfig> found;
    const auto* table = instance.extension<clap_plugin_audio_ports_config>(CLAP_EXT_AUDIO_PORTS_CONFIG);
    const std::uint32_t count = table == nullptr ? 0 : table->count(instance.clap());
    for (std::uint32_t i = 0; i < count; ++i) {
        clap_audio_ports_config config{};
        if (table->get(instance.clap(), i, &config))
            found.push_back({config.id, textOf(config.name), config.input_port_count, config.output_port_count,
                             config.has_main_input ? config.main_input_channel_count : 0,
                             config.has_main_output ? config.main_output_channel_count : 0,
                             textOf(config.main_input_port_type), textOf(config.main_output_port_type)});
    }
    return found;
}

void selectConfig(PluginInstance& instance, const std::string& wanted) {
    const std::vector<PortConfig> configs = portConfigs(instance);
    if (configs.empty())
        throw Failure("the plug-in has no port configurations to choose from");
    double number = 0.0;
    const bool isNumber = wholeNumber(wanted, number);
    auto found = std::find_if(configs.begin(), configs.end(), [&](const PortConfig& config) {
        return isNumber && static_cast<double>(config.id) == number;
    });
    if (found == configs.end())
        found = std::find_if(configs.begin(), configs.end(),
                             [&](const PortConfig& config) { return sameWord(config.name, wanted); });
    if (found == configs.end()) {
        std::vector<std::string> names;
        for (const PortConfig& config : configs)
            names.push_back(config.name);
        throw Failure("there is no port configuration \"" + wanted + "\"" + suggestion(wanted, names) +
                      " (\"info\" lists them)");
    }
    select(instance, *found);
}

void fitChannels(PluginInstance& instance, std::uint32_t channels) {
    const std::uint32_t present = audioPorts(instance).mainInputChannels();
    if (present == channels)
        return;
    const std::vector<PortConfig> configs = portConfigs(instance);
    const std::string_view type = channels == 1 ? CLAP_PORT_MONO : channels == 2 ? CLAP_PORT_STEREO : "";
    const PortConfig* best = nullptr;
    int bestScore = 0;
    for (const PortConfig& config : configs) {
        if (config.inputChannels != channels)
            continue;
        const int score =
            1 + (config.outputChannels == channels ? 2 : 0) + (!type.empty() && config.inputType == type ? 4 : 0);
        if (score > bestScore) {
            best = &config;
            bestScore = score;
        }
    }
    if (best == nullptr)
        throw Failure("the input has " + std::to_string(channels) + " channels; the plug-in takes " +
                      (configs.empty() ? std::to_string(present) : channelChoice(configs)));
    select(instance, *best);
}
