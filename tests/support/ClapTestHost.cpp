#include "tests/support/ClapTestHost.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace {

ClapTestHost& of(const clap_host* host) {
    return *static_cast<ClapTestHost*>(host->host_data);
}

} // namespace

ClapTestLibrary::ClapTestLibrary(const char* path)
    : module(path), loadedEntry(static_cast<const clap_plugin_entry*>(module.symbol("clap_entry"))) {
    if (loadedEntry == nullptr || !loadedEntry->init(path))
        throw std::runtime_error("the library has no entry that initialises");
}

ClapTestLibrary::~ClapTestLibrary() {
    loadedEntry->deinit();
}

const clap_plugin_factory& ClapTestLibrary::factory() const {
    return *static_cast<const clap_plugin_factory*>(loadedEntry->get_factory(CLAP_PLUGIN_FACTORY_ID));
}

ClapTestEvents::ClapTestEvents() {
    table.ctx = this;
    table.size = [](const clap_input_events* list) noexcept {
        return static_cast<std::uint32_t>(static_cast<const ClapTestEvents*>(list->ctx)->events.size());
    };
    table.get = [](const clap_input_events* list, std::uint32_t index) noexcept {
        return &static_cast<const ClapTestEvents*>(list->ctx)->events[index].header;
    };
}

void ClapTestEvents::addValue(std::uint32_t time, clap_id id, double value) {
    Event event{};
    event.value = {};
    event.value.header = {sizeof(clap_event_param_value), time, CLAP_CORE_EVENT_SPACE_ID, CLAP_EVENT_PARAM_VALUE, 0};
    event.value.param_id = id;
    event.value.note_id = -1;
    event.value.port_index = -1;
    event.value.channel = -1;
    event.value.key = -1;
    event.value.value = value;
    events.push_back(event);
}

void ClapTestEvents::addMidi(std::uint32_t time, std::uint8_t status, std::uint8_t data1, std::uint8_t data2) {
    Event event{};
    event.midi = {};
    event.midi.header = {sizeof(clap_event_midi), time, CLAP_CORE_EVENT_SPACE_ID, CLAP_EVENT_MIDI, 0};
    event.midi.data[0] = status;
    event.midi.data[1] = data1;
    event.midi.data[2] = data2;
    events.push_back(event);
}

void ClapTestEvents::addNote(std::uint32_t time, bool on, int channel, int key, double velocity) {
    Event event{};
    event.note = {};
    event.note.header = {sizeof(clap_event_note), time, CLAP_CORE_EVENT_SPACE_ID,
                         static_cast<std::uint16_t>(on ? CLAP_EVENT_NOTE_ON : CLAP_EVENT_NOTE_OFF), 0};
    event.note.note_id = -1;
    event.note.channel = static_cast<std::int16_t>(channel);
    event.note.key = static_cast<std::int16_t>(key);
    event.note.velocity = velocity;
    events.push_back(event);
}

ClapTestOutput::ClapTestOutput() {
    values.reserve(4096);
    table.ctx = this;
    table.try_push = [](const clap_output_events* list, const clap_event_header* event) noexcept {
        auto& taken = static_cast<ClapTestOutput*>(list->ctx)->values;
        if (event->type != CLAP_EVENT_PARAM_VALUE || taken.size() == taken.capacity())
            return false;
        taken.push_back(*reinterpret_cast<const clap_event_param_value*>(event));
        return true;
    };
}

ClapTestHost::ClapTestHost(Offers wanted) : offers(wanted) {
    host.clap_version = CLAP_VERSION;
    host.host_data = this;
    host.name = "Test host";
    host.vendor = "Tessivane";
    host.url = "";
    host.version = "1";
    host.get_extension = [](const clap_host* self, const char* id) noexcept -> const void* {
        static constexpr clap_host_params params{[](const clap_host* h, std::uint32_t) noexcept { ++of(h).rescans; },
                                                 [](const clap_host*, clap_id, std::uint32_t) noexcept {},
                                                 [](const clap_host* h) noexcept { ++of(h).flushRequests; }};
        static constexpr clap_host_state state{[](const clap_host* h) noexcept { ++of(h).dirtyMarks; }};
        static constexpr clap_host_latency latency{[](const clap_host* h) noexcept { ++of(h).latencyChanges; }};
        static constexpr clap_host_track_info trackInfo{[](const clap_host* h, clap_track_info* info) noexcept {
            *info = {};
            info->flags = CLAP_TRACK_INFO_HAS_TRACK_NAME;
            std::strncpy(info->name, of(h).trackName.c_str(), sizeof(info->name) - 1);
            return true;
        }};
        static constexpr clap_host_preset_load presetLoad{
            [](const clap_host* h, std::uint32_t, const char* path, const char*, std::int32_t,
               const char* message) noexcept { of(h).presetErrors.push_back(std::string(path) + ": " + message); },
            [](const clap_host* h, std::uint32_t, const char* path, const char*) noexcept {
                of(h).presetsLoaded.emplace_back(path);
            }};
        static constexpr std::uint64_t emptyTable[16]{};
        if (of(self).offers == Offers::nothing)
            return nullptr;
        if (of(self).offers == Offers::emptyTables)
            return emptyTable;
        if (std::strcmp(id, CLAP_EXT_PARAMS) == 0)
            return &params;
        if (std::strcmp(id, CLAP_EXT_STATE) == 0)
            return &state;
        if (std::strcmp(id, CLAP_EXT_LATENCY) == 0)
            return &latency;
        if (std::strcmp(id, CLAP_EXT_TRACK_INFO) == 0)
            return &trackInfo;
        if (std::strcmp(id, CLAP_EXT_PRESET_LOAD) == 0)
            return &presetLoad;
        return nullptr;
    };
    host.request_restart = [](const clap_host*) noexcept {};
    host.request_process = [](const clap_host*) noexcept {};
    host.request_callback = [](const clap_host* self) noexcept { ++of(self).callbacksAsked; };
}

ClapTestInstance::ClapTestInstance(const ClapTestLibrary& library, ClapTestHost& host)
    : ClapTestInstance(library.factory().create_plugin(
          &library.factory(), &host.host, library.factory().get_plugin_descriptor(&library.factory(), 0)->id)) {}

ClapTestInstance::ClapTestInstance(const clap_plugin* made) : plugin(made) {
    if (plugin == nullptr || !plugin->init(plugin))
        throw std::runtime_error("no instance");
}

ClapTestInstance::~ClapTestInstance() {
    stop();
    plugin->destroy(plugin);
}

void ClapTestInstance::shapeBuffers(std::uint32_t maxFrames) {
    const auto* ports = extension<clap_plugin_audio_ports>(CLAP_EXT_AUDIO_PORTS);
    clap_audio_port_info info{};
    portChannels.clear();
    std::size_t channels = 0;
    for (std::uint32_t port = 0; port < ports->count(plugin, true); ++port) {
        ASSERT_TRUE(ports->get(plugin, port, true, &info));
        portChannels.push_back(info.channel_count);
        channels += info.channel_count;
    }
    inputs.assign(channels, std::vector<float>(maxFrames, 0.0f));
    inputMasks.assign(portChannels.size(), 0);
    ASSERT_TRUE(ports->get(plugin, 0, false, &info));
    outputs.assign(info.channel_count, std::vector<float>(maxFrames, -7.0f));
}

void ClapTestInstance::start(double sampleRate, std::uint32_t maxFrames) {
    shapeBuffers(maxFrames);
    ASSERT_TRUE(plugin->activate(plugin, sampleRate, 1, maxFrames));
    ASSERT_TRUE(plugin->start_processing(plugin));
    started = true;
}

void ClapTestInstance::stop() {
    if (!started)
        return;
    plugin->stop_processing(plugin);
    plugin->deactivate(plugin);
    started = false;
}

std::int32_t ClapTestInstance::process(std::uint32_t frames) {
    std::vector<std::vector<float*>> pointers(portChannels.size());
    std::vector<clap_audio_buffer> buffers(portChannels.size());
    std::size_t channel = 0;
    for (std::size_t port = 0; port < portChannels.size(); ++port) {
        for (std::uint32_t i = 0; i < portChannels[port]; ++i)
            pointers[port].push_back(inputs[channel++].data());
        buffers[port] = {pointers[port].data(), nullptr, portChannels[port], 0, inputMasks[port]};
    }
    std::vector<float*> outputPointers;
    for (std::size_t index = 0; index < outputs.size(); ++index)
        outputPointers.push_back(inPlace ? inputs[index].data() : outputs[index].data());
    clap_audio_buffer output{outputPointers.data(), nullptr, static_cast<std::uint32_t>(outputs.size()), 0, 0};
    clap_process block{};
    block.steady_time = -1;
    block.frames_count = frames;
    block.transport = transport;
    block.audio_inputs = buffers.data();
    block.audio_inputs_count = static_cast<std::uint32_t>(buffers.size());
    block.audio_outputs = &output;
    block.audio_outputs_count = 1;
    block.in_events = events.list();
    block.out_events = taken.list();
    const std::int32_t status = plugin->process(plugin, &block);
    outputMask = output.constant_mask;
    for (std::size_t index = 0; inPlace && index < outputs.size(); ++index)
        std::copy_n(inputs[index].begin(), frames, outputs[index].begin());
    return status;
}

std::vector<std::vector<float>> ClapTestInstance::run(const std::vector<std::vector<float>>& input,
                                                      std::uint32_t block) {
    const auto length = static_cast<std::uint32_t>(input.front().size());
    std::vector<std::vector<float>> result(outputs.size());
    for (std::uint32_t position = 0; position < length; position += block) {
        const std::uint32_t frames = std::min(block, length - position);
        for (std::size_t channel = 0; channel < input.size(); ++channel)
            std::copy_n(input[channel].begin() + position, frames, inputs[channel].begin());
        process(frames);
        for (std::size_t channel = 0; channel < outputs.size(); ++channel)
            result[channel].insert(result[channel].end(), outputs[channel].begin(), outputs[channel].begin() + frames);
    }
    return result;
}
