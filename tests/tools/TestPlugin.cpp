// A small plug-in for the tests of zelk-host: gain, polarity, an echo as a tail, a side chain, 100 samples of latency.
// It watches how it is used: what the host does wrong goes to the host's log as "host misbehaving".
#include "host/clap/Clap.h"

#include "base/NumberText.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace {

constexpr std::uint32_t latencyFrames = 100;
constexpr std::uint32_t echoFrames = 50;

enum Parameter { gain, polarity, source, echo, trouble, parameterCount };
enum Trouble { none, failure, restart, callback, wrongThread, overrun };

struct ParameterTexts {
    const char* name;
    std::vector<std::string> choices; // empty: a gain in dB
};

const std::array<ParameterTexts, parameterCount> texts{{
    {"Gain", {}},
    {"Polarity", {"Normal", "Inverted"}},
    {"Source", {"Main", "Side Chain"}},
    {"Echo", {"Off", "On"}},
    {"Trouble \"quoted\"", {"None", "Failure", "Restart", "Callback", "Wrong Thread", "Overrun"}},
}};

struct Layout {
    const char* name;
    std::uint32_t channels;
    const char* type;
};
constexpr std::array<Layout, 3> layouts{{{"Mono", 1, "mono"}, {"Stereo", 2, "stereo"}, {"5.1", 6, "surround"}}};

struct Instance {
    clap_plugin table;
    const clap_host* host;
    std::array<double, parameterCount> values{};
    std::size_t layout = 1;
    bool active = false;
    bool processing = false;
    std::vector<std::vector<float>> delays; // a ring a channel
    std::size_t position = 0;

    template <typename Table>
    const Table* hosts(const char* id) const {
        return static_cast<const Table*>(host->get_extension(host, id));
    }
    void log(std::int32_t severity, const std::string& message) const {
        hosts<clap_host_log>(CLAP_EXT_LOG)->log(host, severity, message.c_str());
    }
    void demand(bool condition, const char* rule) const {
        if (!condition)
            log(CLAP_LOG_HOST_MISBEHAVING, rule);
    }
    void demandMain(const char* what) const {
        demand(hosts<clap_host_thread_check>(CLAP_EXT_THREAD_CHECK)->is_main_thread(host), what);
    }
    void demandAudio(const char* what) const {
        demand(hosts<clap_host_thread_check>(CLAP_EXT_THREAD_CHECK)->is_audio_thread(host), what);
    }
};

Instance& of(const clap_plugin* plugin) {
    return *static_cast<Instance*>(plugin->plugin_data);
}

// "gain polarity source echo trouble" as numbers, for states and presets.
[[nodiscard]] bool readValues(Instance& self, const std::string& text) {
    std::istringstream words(text);
    std::array<double, parameterCount> read{};
    for (double& value : read) {
        if (!(words >> value))
            return false;
    }
    self.values = read;
    return true;
}

void takeEvents(Instance& self, const clap_input_events* events, std::uint32_t from, std::uint32_t to) {
    for (std::uint32_t i = 0; i < events->size(events); ++i) {
        const clap_event_header* header = events->get(events, i);
        if (header->type == CLAP_EVENT_PARAM_VALUE && header->time >= from && header->time < to) {
            const auto* event = reinterpret_cast<const clap_event_param_value*>(header);
            self.values[event->param_id] = event->value;
        }
        if (header->type == CLAP_EVENT_MIDI && header->time >= from && header->time < to) {
            const auto& data = reinterpret_cast<const clap_event_midi*>(header)->data;
            if ((data[0] & 0xF0) == 0xB0 && data[1] == 7) // volume
                self.values[gain] = data[2] - 100.0;
        }
    }
}

float playSample(Instance& self, std::size_t channel, float input) {
    std::vector<float>& ring = self.delays[channel];
    ring[self.position] = input;
    const auto behind = [&](std::size_t frames) { return ring[(self.position + ring.size() - frames) % ring.size()]; };
    float output = behind(latencyFrames);
    if (self.values[echo] != 0.0)
        output += 0.5f * behind(latencyFrames + echoFrames);
    if (self.values[gain] != 0.0)
        output *= static_cast<float>(std::pow(10.0, self.values[gain] / 20.0));
    return self.values[polarity] != 0.0 ? -output : output;
}

std::int32_t process(const clap_plugin* plugin, const clap_process* work) noexcept {
    Instance& self = of(plugin);
    self.demandAudio("process off the audio thread");
    self.demand(self.processing, "process without start_processing");
    self.demand(work->audio_inputs_count == 2 && work->audio_outputs_count == 1, "a port is missing");
    for (std::uint32_t frame = 0; frame < work->frames_count; ++frame) {
        takeEvents(self, work->in_events, frame, frame + 1);
        const clap_audio_buffer& input = work->audio_inputs[self.values[source] != 0.0 ? 1 : 0];
        for (std::uint32_t channel = 0; channel < input.channel_count; ++channel)
            work->audio_outputs[0].data32[channel][frame] = playSample(self, channel, input.data32[channel][frame]);
        self.position = (self.position + 1) % self.delays[0].size();
    }
    const auto wanted = static_cast<Trouble>(self.values[trouble]);
    if (wanted == restart || wanted == callback) {
        (wanted == restart ? self.host->request_restart : self.host->request_callback)(self.host);
        self.values[trouble] = none;
    }
    if (wanted == wrongThread)
        self.hosts<clap_host_params>(CLAP_EXT_PARAMS)->rescan(self.host, CLAP_PARAM_RESCAN_VALUES);
    if (wanted == overrun)
        work->audio_outputs[0].data32[0][work->frames_count] = 0.0f;
    return wanted == failure ? CLAP_PROCESS_ERROR : CLAP_PROCESS_CONTINUE;
}

bool init(const clap_plugin* plugin) noexcept {
    of(plugin).demandMain("init off the main thread");
    return true;
}

void destroy(const clap_plugin* plugin) noexcept {
    of(plugin).demand(!of(plugin).active, "destroyed while active");
    delete &of(plugin);
}

bool activate(const clap_plugin* plugin, double rate, std::uint32_t, std::uint32_t most) noexcept {
    Instance& self = of(plugin);
    self.demandMain("activate off the main thread");
    self.demand(!self.active, "activated twice");
    self.log(CLAP_LOG_INFO, "activate " + shortestText(rate) + " " + std::to_string(most));
    self.delays.assign(layouts[self.layout].channels, std::vector<float>(latencyFrames + echoFrames + 1));
    self.active = rate < 1e6;
    return self.active;
}

void deactivate(const clap_plugin* plugin) noexcept {
    of(plugin).demandMain("deactivate off the main thread");
    of(plugin).demand(of(plugin).active && !of(plugin).processing, "deactivated in the wrong state");
    of(plugin).active = false;
}

bool startProcessing(const clap_plugin* plugin) noexcept {
    of(plugin).demandAudio("start_processing off the audio thread");
    of(plugin).demand(of(plugin).active && !of(plugin).processing, "started in the wrong state");
    return of(plugin).processing = true;
}

void stopProcessing(const clap_plugin* plugin) noexcept {
    of(plugin).demandAudio("stop_processing off the audio thread");
    of(plugin).processing = false;
}

void reset(const clap_plugin* plugin) noexcept {
    for (std::vector<float>& ring : of(plugin).delays)
        std::fill(ring.begin(), ring.end(), 0.0f);
}

void onMainThread(const clap_plugin* plugin) noexcept {
    of(plugin).demandMain("on_main_thread off the main thread");
    of(plugin).log(CLAP_LOG_INFO, "on_main_thread");
}

template <std::size_t size>
void setText(char (&to)[size], const char* from) {
    std::snprintf(to, size, "%s", from);
}

constexpr clap_plugin_params params{
    [](const clap_plugin*) noexcept -> std::uint32_t { return parameterCount; },
    [](const clap_plugin*, std::uint32_t index, clap_param_info* info) noexcept {
        *info = {};
        info->id = index;
        const std::size_t choices = texts[index].choices.size();
        info->flags = CLAP_PARAM_IS_AUTOMATABLE | (choices > 0 ? CLAP_PARAM_IS_STEPPED : 0);
        setText(info->name, texts[index].name);
        setText(info->module, index == trouble ? "Test/Inner" : "");
        info->min_value = choices > 0 ? 0.0 : -60.0;
        info->max_value = choices > 0 ? static_cast<double>(choices - 1) : 24.0;
        return true;
    },
    [](const clap_plugin* plugin, clap_id id, double* value) noexcept {
        *value = of(plugin).values[id];
        return true;
    },
    [](const clap_plugin*, clap_id id, double value, char* out, std::uint32_t capacity) noexcept {
        const std::vector<std::string>& choices = texts[id].choices;
        const std::string text =
            choices.empty() ? fixedText(value, 2) + " dB" : choices[static_cast<std::size_t>(value)];
        std::snprintf(out, capacity, "%s", text.c_str());
        return true;
    },
    [](const clap_plugin*, clap_id id, const char* text, double* value) noexcept {
        const std::vector<std::string>& choices = texts[id].choices;
        if (choices.empty())
            return readNumber(text, *value) > 0;
        const auto found = std::find(choices.begin(), choices.end(), text);
        *value = static_cast<double>(found - choices.begin());
        return found != choices.end();
    },
    [](const clap_plugin* plugin, const clap_input_events* in, const clap_output_events*) noexcept {
        of(plugin).demand(!of(plugin).active, "flushed while active");
        takeEvents(of(plugin), in, 0, 1);
    }};

constexpr clap_plugin_state state{
    [](const clap_plugin* plugin, const clap_ostream* stream) noexcept {
        std::string text;
        for (const double value : of(plugin).values)
            text += shortestText(value) + " ";
        return stream->write(stream, text.data(), text.size()) == static_cast<std::int64_t>(text.size());
    },
    [](const clap_plugin* plugin, const clap_istream* stream) noexcept {
        std::array<char, 256> text{};
        const std::int64_t length = stream->read(stream, text.data(), text.size());
        return length > 0 && readValues(of(plugin), {text.data(), static_cast<std::size_t>(length)});
    }};

constexpr clap_plugin_preset_load presetLoad{
    [](const clap_plugin* plugin, std::uint32_t kind, const char* location, const char*) noexcept {
        std::ifstream file(location);
        const std::string text{std::istreambuf_iterator<char>(file), {}};
        if (kind == CLAP_PRESET_DISCOVERY_LOCATION_FILE && readValues(of(plugin), text))
            return true;
        const auto* hosts = of(plugin).hosts<clap_host_preset_load>(CLAP_EXT_PRESET_LOAD);
        hosts->on_error(of(plugin).host, kind, location, nullptr, 0, "no preset of mine");
        return false;
    }};

constexpr clap_plugin_audio_ports audioPorts{
    [](const clap_plugin*, bool isInput) noexcept -> std::uint32_t { return isInput ? 2 : 1; },
    [](const clap_plugin* plugin, std::uint32_t index, bool, clap_audio_port_info* info) noexcept {
        const Layout& layout = layouts[of(plugin).layout];
        *info = {index,           {},          index == 0 ? CLAP_AUDIO_PORT_IS_MAIN : 0,
                 layout.channels, layout.type, index == 0 ? 0 : CLAP_INVALID_ID};
        setText(info->name, index == 0 ? "Main" : "Side Chain");
        return true;
    }};

constexpr clap_plugin_note_ports notePorts{
    [](const clap_plugin*, bool isInput) noexcept -> std::uint32_t { return isInput ? 1 : 0; },
    [](const clap_plugin*, std::uint32_t, bool, clap_note_port_info* info) noexcept {
        *info = {0, CLAP_NOTE_DIALECT_MIDI, CLAP_NOTE_DIALECT_MIDI, "MIDI"};
        return true;
    }};

constexpr clap_plugin_audio_ports_config portsConfig{
    [](const clap_plugin*) noexcept -> std::uint32_t { return layouts.size(); },
    [](const clap_plugin*, std::uint32_t index, clap_audio_ports_config* config) noexcept {
        const Layout& layout = layouts[index];
        *config = {index, {}, 2, 1, true, layout.channels, layout.type, true, layout.channels, layout.type};
        setText(config->name, layout.name);
        return true;
    },
    [](const clap_plugin* plugin, clap_id id) noexcept {
        of(plugin).demand(!of(plugin).active, "layout chosen while active");
        of(plugin).layout = id;
        return id < layouts.size();
    }};

constexpr clap_plugin_latency latency{[](const clap_plugin*) noexcept { return latencyFrames; }};
constexpr clap_plugin_tail tail{[](const clap_plugin*) noexcept { return echoFrames; }};
constexpr clap_plugin_track_info trackInfo{[](const clap_plugin* plugin) noexcept {
    clap_track_info info{};
    const auto* hosts = of(plugin).hosts<clap_host_track_info>(CLAP_EXT_TRACK_INFO);
    if (hosts->get(of(plugin).host, &info) && (info.flags & CLAP_TRACK_INFO_HAS_TRACK_NAME) != 0)
        of(plugin).log(CLAP_LOG_INFO, std::string("track ") + info.name);
}};

const void* getExtension(const clap_plugin*, const char* id) noexcept {
    const std::string wanted = id;
    return wanted == CLAP_EXT_PARAMS               ? static_cast<const void*>(&params)
           : wanted == CLAP_EXT_STATE              ? &state
           : wanted == CLAP_EXT_PRESET_LOAD        ? &presetLoad
           : wanted == CLAP_EXT_AUDIO_PORTS        ? &audioPorts
           : wanted == CLAP_EXT_AUDIO_PORTS_CONFIG ? &portsConfig
           : wanted == CLAP_EXT_NOTE_PORTS         ? &notePorts
           : wanted == CLAP_EXT_LATENCY            ? &latency
           : wanted == CLAP_EXT_TAIL               ? &tail
           : wanted == CLAP_EXT_TRACK_INFO         ? static_cast<const void*>(&trackInfo)
                                                   : nullptr;
}

constexpr std::array<const char*, 3> features{CLAP_PLUGIN_FEATURE_AUDIO_EFFECT, CLAP_PLUGIN_FEATURE_UTILITY, nullptr};
constexpr clap_plugin_descriptor descriptor{
    CLAP_VERSION, "com.tessivane.test-gain",    "Test \"Gain\"\n\\", "Tessivane", "", "", "",
    "1.0",        "\x01 f\xc3\xbcr Tests \xff", features.data()};

constexpr clap_plugin_factory factory{
    [](const clap_plugin_factory*) noexcept -> std::uint32_t { return 1; },
    [](const clap_plugin_factory*, std::uint32_t index) noexcept { return index == 0 ? &descriptor : nullptr; },
    [](const clap_plugin_factory*, const clap_host* host, const char* id) noexcept -> const clap_plugin* {
        if (std::strcmp(id, descriptor.id) != 0)
            return nullptr;
        auto* self = new Instance{};
        self->host = host;
        self->table = {&descriptor,     self,           init,  destroy, activate,     deactivate,
                       startProcessing, stopProcessing, reset, process, getExtension, onMainThread};
        return &self->table;
    }};

} // namespace

extern "C" {
[[gnu::visibility("default")]] extern const clap_plugin_entry clap_entry;
const clap_plugin_entry clap_entry{CLAP_VERSION, [](const char*) noexcept { return true; }, []() noexcept {},
                                   [](const char* id) noexcept -> const void* {
                                       return std::strcmp(id, CLAP_PLUGIN_FACTORY_ID) == 0 ? &factory : nullptr;
                                   }};
}
