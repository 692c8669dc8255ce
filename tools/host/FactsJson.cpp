// The facts of a plug-in for programs.
#include "tools/host/JsonWriter.h"
#include "tools/host/PluginFacts.h"

#include <limits>

namespace {

void writePorts(JsonWriter& json, const char* key, const std::vector<AudioPort>& ports) {
    json.openList(key);
    for (const AudioPort& port : ports) {
        json.openObject();
        json.whole("id", port.id);
        json.text("name", port.name);
        json.whole("channels", port.channels);
        json.text("type", port.type);
        json.texts("flags", portFlags(port.flags));
        if (port.inPlacePair != CLAP_INVALID_ID)
            json.whole("in_place_pair", port.inPlacePair);
        json.close();
    }
    json.close();
}

void writeNotePorts(JsonWriter& json, const char* key, const std::vector<NotePort>& ports) {
    json.openList(key);
    for (const NotePort& port : ports) {
        json.openObject();
        json.whole("id", port.id);
        json.text("name", port.name);
        json.texts("dialects", dialectNames(port.dialects));
        json.texts("preferred_dialect", dialectNames(port.preferredDialect));
        json.close();
    }
    json.close();
}

void writeConfigs(JsonWriter& json, const std::vector<PortConfig>& configs) {
    json.openList("port_configurations");
    for (const PortConfig& config : configs) {
        json.openObject();
        json.whole("id", config.id);
        json.text("name", config.name);
        json.whole("input_ports", config.inputPorts);
        json.whole("output_ports", config.outputPorts);
        json.whole("main_input_channels", config.inputChannels);
        json.text("main_input_type", config.inputType);
        json.whole("main_output_channels", config.outputChannels);
        json.text("main_output_type", config.outputType);
        json.close();
    }
    json.close();
}

void writeValue(JsonWriter& json, const char* key, double value, const std::string& text) {
    json.openObject(key);
    json.number("value", value);
    json.text("text", text);
    json.close();
}

void writeParameters(JsonWriter& json, const std::vector<ParameterFacts>& parameters) {
    json.openList("parameters");
    for (const ParameterFacts& parameter : parameters) {
        json.openObject();
        json.whole("id", parameter.id);
        json.text("name", parameter.name);
        json.text("module", parameter.module);
        json.texts("flags", parameter.flags);
        writeValue(json, "min", parameter.least, parameter.leastText);
        writeValue(json, "max", parameter.most, parameter.mostText);
        writeValue(json, "default", parameter.preset, parameter.presetText);
        writeValue(json, "current", parameter.current, parameter.currentText);
        if (!parameter.choices.empty())
            json.texts("choices", parameter.choices);
        json.close();
    }
    json.close();
}

} // namespace

std::string factsAsJson(const PluginFacts& facts) {
    JsonWriter json;
    json.openObject();
    json.text("file", facts.file);
    json.text("clap_version", facts.clapVersion);
    json.texts("plugins_in_file", facts.allPlugins);
    json.text("id", facts.id);
    json.text("name", facts.name);
    json.text("vendor", facts.vendor);
    json.text("version", facts.version);
    json.text("description", facts.description);
    json.text("url", facts.url);
    json.text("manual_url", facts.manualUrl);
    json.text("support_url", facts.supportUrl);
    json.texts("features", facts.features);
    json.texts("extensions", facts.extensions);
    json.number("sample_rate", facts.sampleRate);
    json.whole("latency", facts.latency);
    json.whole("tail", facts.tail);
    json.truth("tail_is_endless", facts.tail >= std::numeric_limits<std::int32_t>::max());
    writePorts(json, "audio_inputs", facts.ports.inputs);
    writePorts(json, "audio_outputs", facts.ports.outputs);
    writeNotePorts(json, "note_inputs", facts.noteInputs);
    writeNotePorts(json, "note_outputs", facts.noteOutputs);
    writeConfigs(json, facts.configs);
    writeParameters(json, facts.parameters);
    json.close();
    return json.result();
}
