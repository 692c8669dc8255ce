// The facts of a plug-in for people.
#include "base/NumberText.h"
#include "tools/host/PluginFacts.h"
#include "tools/host/TextTools.h"

#include <algorithm>
#include <cstddef>
#include <limits>

namespace {

// More choices of a parameter than these make its line hard to read.
constexpr std::size_t mostChoicesShown = 12;

std::string joined(const std::vector<std::string>& words, const char* between = ", ") {
    std::string text;
    for (const std::string& word : words)
        text += (text.empty() ? "" : between) + word;
    return text;
}

void addLine(std::string& text, const std::string& label, const std::string& value) {
    if (!value.empty())
        text += label + std::string(label.size() < 14 ? 14 - label.size() : 1, ' ') + onOneLine(value) + "\n";
}

std::string counted(std::uint32_t count, const char* thing) {
    return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

std::string channelsText(std::uint32_t channels, const std::string& type) {
    return counted(channels, "channel") + (type.empty() ? "" : ", " + type);
}

std::string audioPortText(const AudioPort& port) {
    return "  \"" + onOneLine(port.name) + "\" (id " + std::to_string(port.id) +
           "): " + channelsText(port.channels, port.type) +
           (port.flags == 0 ? "" : ", " + joined(portFlags(port.flags))) +
           (port.inPlacePair == CLAP_INVALID_ID ? "" : ", in place with " + std::to_string(port.inPlacePair)) + "\n";
}

std::string notePortText(const NotePort& port) {
    return "  \"" + onOneLine(port.name) + "\" (id " + std::to_string(port.id) +
           "): " + joined(dialectNames(port.dialects)) + "; prefers " + joined(dialectNames(port.preferredDialect)) +
           "\n";
}

// A value as the plug-in writes it, and plain where that says more.
std::string valueText(double value, const std::string& text) {
    return text.empty() ? shortestText(value) : onOneLine(text);
}

std::string parameterText(const ParameterFacts& facts) {
    std::string text = "  " + onOneLine(facts.name);
    if (!facts.module.empty())
        text += " [" + onOneLine(facts.module) + "]";
    text += "\n      ";
    if (facts.choices.empty() || facts.choices.size() > mostChoicesShown)
        text += valueText(facts.least, facts.leastText) + " to " + valueText(facts.most, facts.mostText);
    else
        text += onOneLine(joined(facts.choices, " | "));
    text += "; default " + valueText(facts.preset, facts.presetText);
    if (facts.current != facts.preset)
        text += "; now " + valueText(facts.current, facts.currentText);
    return text + "; plain " + shortestText(facts.least) + " to " + shortestText(facts.most) + "; " +
           joined(facts.flags) + "\n";
}

std::string timeText(std::uint32_t samples, double sampleRate) {
    return std::to_string(samples) + " samples, " + fixedText(1e3 * samples / sampleRate, 2) + " ms at " +
           shortestText(sampleRate) + " Hz";
}

} // namespace

std::string factsAsText(const PluginFacts& facts) {
    std::string text;
    addLine(text, "Name", facts.name);
    addLine(text, "Id", facts.id);
    addLine(text, "Vendor", facts.vendor);
    addLine(text, "Version", facts.version);
    addLine(text, "Description", facts.description);
    addLine(text, "Page", facts.url);
    addLine(text, "Manual", facts.manualUrl);
    addLine(text, "Support", facts.supportUrl);
    addLine(text, "Features", joined(facts.features));
    addLine(text, "CLAP", facts.clapVersion);
    addLine(text, "File", facts.file);
    if (facts.allPlugins.size() > 1)
        addLine(text, "In this file", joined(facts.allPlugins));
    addLine(text, "Extensions", joined(facts.extensions));
    addLine(text, "Latency", timeText(facts.latency, facts.sampleRate));
    const bool endless = facts.tail >= std::numeric_limits<std::int32_t>::max();
    addLine(text, "Tail", endless ? "endless" : timeText(facts.tail, facts.sampleRate));

    text += "\nAudio inputs:\n";
    for (const AudioPort& port : facts.ports.inputs)
        text += audioPortText(port);
    text += "Audio outputs:\n";
    for (const AudioPort& port : facts.ports.outputs)
        text += audioPortText(port);
    if (!facts.noteInputs.empty() || !facts.noteOutputs.empty())
        text += "Note ports:\n";
    for (const NotePort& port : facts.noteInputs)
        text += notePortText(port);
    for (const NotePort& port : facts.noteOutputs)
        text += notePortText(port);
    if (!facts.configs.empty())
        text += "\nPort configurations (--config):\n";
    for (const PortConfig& config : facts.configs)
        text += "  " + std::to_string(config.id) + "  \"" + onOneLine(config.name) +
                "\": " + channelsText(config.inputChannels, config.inputType) + "; " +
                counted(config.inputPorts, "input") + ", " + counted(config.outputPorts, "output") + "\n";
    text += '\n';
    text += std::to_string(facts.parameters.size()) + " parameters:\n";
    for (const ParameterFacts& parameter : facts.parameters)
        text += parameterText(parameter);
    return text;
}
