#include "tools/host/PluginFacts.h"

#include "tools/host/Parameters.h"
#include "tools/host/TextTools.h"

#include <algorithm>
#include <array>
#include <span>

namespace {

constexpr double mostChoices = 256.0;

constexpr std::array<const char*, 33> knownExtensions{
    CLAP_EXT_AUDIO_PORTS,
    CLAP_EXT_AUDIO_PORTS_CONFIG,
    CLAP_EXT_AUDIO_PORTS_CONFIG_INFO,
    CLAP_EXT_CONTEXT_MENU,
    CLAP_EXT_GUI,
    CLAP_EXT_LATENCY,
    CLAP_EXT_NOTE_PORTS,
    CLAP_EXT_PARAMS,
    CLAP_EXT_POSIX_FD_SUPPORT,
    CLAP_EXT_PRESET_LOAD,
    CLAP_EXT_STATE,
    CLAP_EXT_STATE_CONTEXT,
    CLAP_EXT_SURROUND,
    CLAP_EXT_TAIL,
    CLAP_EXT_TIMER_SUPPORT,
    CLAP_EXT_TRACK_INFO,
    "clap.ambisonic.draft/3",
    "clap.audio-ports-activation/draft-2",
    "clap.check_for_update.draft/0",
    "clap.configurable-audio-ports.draft1",
    "clap.cv.draft/0",
    "clap.extensible-audio-ports.draft0",
    "clap.midi-mappings.draft/0",
    "clap.note-name",
    "clap.param-indication.draft/4",
    "clap.preset-load/2",
    "clap.remote-controls.draft/2",
    "clap.render",
    "clap.state-context/2",
    "clap.thread-pool",
    "clap.track-info/1",
    "clap.tuning.draft/2",
    "clap.voice-info",
};

struct FlagName {
    std::uint32_t flag;
    const char* name;
};

constexpr std::array<FlagName, 17> parameterFlags{{
    {CLAP_PARAM_IS_STEPPED, "stepped"},
    {CLAP_PARAM_IS_PERIODIC, "periodic"},
    {CLAP_PARAM_IS_HIDDEN, "hidden"},
    {CLAP_PARAM_IS_READONLY, "read-only"},
    {CLAP_PARAM_IS_BYPASS, "bypass"},
    {CLAP_PARAM_IS_AUTOMATABLE, "automatable"},
    {CLAP_PARAM_IS_AUTOMATABLE_PER_NOTE_ID, "automatable-per-note-id"},
    {CLAP_PARAM_IS_AUTOMATABLE_PER_KEY, "automatable-per-key"},
    {CLAP_PARAM_IS_AUTOMATABLE_PER_CHANNEL, "automatable-per-channel"},
    {CLAP_PARAM_IS_AUTOMATABLE_PER_PORT, "automatable-per-port"},
    {CLAP_PARAM_IS_MODULATABLE, "modulatable"},
    {CLAP_PARAM_IS_MODULATABLE_PER_NOTE_ID, "modulatable-per-note-id"},
    {CLAP_PARAM_IS_MODULATABLE_PER_KEY, "modulatable-per-key"},
    {CLAP_PARAM_IS_MODULATABLE_PER_CHANNEL, "modulatable-per-channel"},
    {CLAP_PARAM_IS_MODULATABLE_PER_PORT, "modulatable-per-port"},
    {CLAP_PARAM_REQUIRES_PROCESS, "requires-process"},
    {CLAP_PARAM_IS_ENUM, "enum"},
}};

constexpr std::array<FlagName, 4> audioPortFlags{{
    {CLAP_AUDIO_PORT_IS_MAIN, "main"},
    {CLAP_AUDIO_PORT_SUPPORTS_64BITS, "supports-64-bit"},
    {CLAP_AUDIO_PORT_PREFERS_64BITS, "prefers-64-bit"},
    {CLAP_AUDIO_PORT_REQUIRES_COMMON_SAMPLE_SIZE, "common-sample-size"},
}};

constexpr std::array<FlagName, 4> dialects{{
    {CLAP_NOTE_DIALECT_CLAP, "clap"},
    {CLAP_NOTE_DIALECT_MIDI, "midi"},
    {CLAP_NOTE_DIALECT_MIDI_MPE, "midi-mpe"},
    {CLAP_NOTE_DIALECT_MIDI2, "midi2"},
}};

std::vector<std::string> namesOf(std::uint32_t flags, std::span<const FlagName> names) {
    std::vector<std::string> found;
    for (const FlagName& name : names) {
        if ((flags & name.flag) != 0)
            found.emplace_back(name.name);
    }
    return found;
}

std::string textOf(const char* text) {
    return text == nullptr ? std::string() : std::string(text);
}

ParameterFacts parameterFacts(const Parameters& parameters, const clap_param_info& info) {
    ParameterFacts facts;
    facts.id = info.id;
    facts.name = std::string(info.name, std::find(info.name, info.name + CLAP_NAME_SIZE, '\0'));
    facts.module = std::string(info.module, std::find(info.module, info.module + CLAP_PATH_SIZE, '\0'));
    facts.flags = namesOf(info.flags, parameterFlags);
    facts.least = info.min_value;
    facts.most = info.max_value;
    facts.preset = info.default_value;
    facts.current = parameters.current(info);
    facts.leastText = parameters.textOf(info, facts.least);
    facts.mostText = parameters.textOf(info, facts.most);
    facts.presetText = parameters.textOf(info, facts.preset);
    facts.currentText = parameters.textOf(info, facts.current);
    if ((info.flags & CLAP_PARAM_IS_STEPPED) != 0 && info.max_value - info.min_value < mostChoices) {
        for (double value = info.min_value; value <= info.max_value; value += 1.0)
            facts.choices.push_back(parameters.textOf(info, value));
    }
    return facts;
}

} // namespace

std::vector<std::string> portFlags(std::uint32_t flags) {
    return namesOf(flags, audioPortFlags);
}

std::vector<std::string> dialectNames(std::uint32_t wanted) {
    return namesOf(wanted, dialects);
}

PluginFacts gatherFacts(Session& session, double sampleRate) {
    PluginInstance& instance = session.instance();
    const clap_plugin_descriptor& descriptor = instance.descriptor();
    PluginFacts facts;
    facts.file = session.library().path();
    const clap_version version = session.library().version();
    facts.clapVersion =
        std::to_string(version.major) + "." + std::to_string(version.minor) + "." + std::to_string(version.revision);
    facts.id = textOf(descriptor.id);
    facts.name = textOf(descriptor.name);
    facts.vendor = textOf(descriptor.vendor);
    facts.version = textOf(descriptor.version);
    facts.description = textOf(descriptor.description);
    facts.url = textOf(descriptor.url);
    facts.manualUrl = textOf(descriptor.manual_url);
    facts.supportUrl = textOf(descriptor.support_url);
    for (const char* const* feature = descriptor.features; feature != nullptr && *feature != nullptr; ++feature)
        facts.features.emplace_back(*feature);
    for (const clap_plugin_descriptor* other : session.library().descriptors())
        facts.allPlugins.emplace_back(other->id);

    facts.ports = audioPorts(instance);
    facts.configs = portConfigs(instance);
    facts.noteInputs = notePorts(instance, true);
    facts.noteOutputs = notePorts(instance, false);
    const Parameters parameters(instance);
    for (const clap_param_info& info : parameters.all())
        facts.parameters.push_back(parameterFacts(parameters, info));
    for (const char* id : knownExtensions) {
        if (instance.extension<void>(id) != nullptr)
            facts.extensions.emplace_back(id);
    }
    facts.sampleRate = sampleRate;
    instance.activate(sampleRate, 256);
    instance.serve();
    facts.latency = instance.latency();
    facts.tail = instance.tail();
    instance.rest();
    return facts;
}
