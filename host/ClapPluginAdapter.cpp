#include "host/ClapPluginAdapter.h"

#include "host/ClapExtensions.h"
#include "host/ClapGuard.h"
#include "host/ClapPorts.h"
#include "host/ClapState.h"
#include "platform/CriticalSections.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <sstream>
#include <utility>

namespace {

constexpr std::uint64_t everyChannel = 0xFFFFFFFFu;

} // namespace

ClapPluginAdapter::ClapPluginAdapter(const clap_host& owningHost, const clap_plugin_descriptor& descriptor)
    : table{}, clapHost(owningHost) {
    table.desc = &descriptor;
    table.plugin_data = this;
    table.init = [](const clap_plugin* self) noexcept { return clapGuard(false, [&] { return of(self).init(); }); };
    table.destroy = destroy;
    table.activate = [](const clap_plugin* self, double rate, std::uint32_t, std::uint32_t maxFrames) noexcept {
        return clapGuard(false, [&] { return of(self).activate(rate, maxFrames); });
    };
    table.deactivate = [](const clap_plugin* self) noexcept { of(self).deactivate(); };
    table.start_processing = [](const clap_plugin* self) noexcept { return of(self).startProcessing(); };
    table.stop_processing = [](const clap_plugin* self) noexcept { of(self).stopProcessing(); };
    table.reset = [](const clap_plugin* self) noexcept { of(self).reset(); };
    table.process = [](const clap_plugin* self, const clap_process* block) noexcept {
        return block != nullptr ? of(self).process(*block) : CLAP_PROCESS_ERROR;
    };
    table.get_extension = [](const clap_plugin* self, const char* id) noexcept { return of(self).extension(id); };
    table.on_main_thread = [](const clap_plugin* self) noexcept {
        clapGuard(false, [&] { return of(self).onMainThread(), true; });
    };
}

ClapPluginAdapter::~ClapPluginAdapter() {
    if (plugin != nullptr)
        plugin->asyncQueue().bindCarrier(nullptr);
}

void ClapPluginAdapter::destroy(const clap_plugin* self) noexcept {
    if (self != nullptr && self->plugin_data != nullptr)
        delete &of(self);
}

// Life cycle

bool ClapPluginAdapter::init() {
    if (hasHalves())
        return true;
    createHalves();
    rebuildPorts();
    host.fetch(clapHost);
    plugin->asyncQueue().bindCarrier(this);
    nameAfterTrack(false); // the project as the host has it is not changed by this
    return true;
}

bool ClapPluginAdapter::activate(double sampleRate, std::uint32_t maxFrames) {
    if (!hasHalves() || !std::isfinite(sampleRate) || sampleRate <= 0.0)
        return false;
    plugin->setSampleRate(static_cast<float>(sampleRate));
    processor->setSampleRate(sampleRate);
    audio.prepare(std::max(maxFrames, 1u));
    active = true;
    return true;
}

void ClapPluginAdapter::deactivate() noexcept {
    active = false;
}

bool ClapPluginAdapter::startProcessing() noexcept REALTIME {
    if (!hasHalves())
        return false;
    processor->reset();
    processing = true;
    return true;
}

void ClapPluginAdapter::stopProcessing() noexcept REALTIME {
    processing = false;
}

void ClapPluginAdapter::reset() noexcept REALTIME {
    if (hasHalves())
        processor->reset();
}

// One block

std::int32_t ClapPluginAdapter::process(const clap_process& block) noexcept REALTIME {
    if (!hasHalves() || !active)
        return CLAP_PROCESS_ERROR;
    const AudioThreadMark::Scope onAudioThread(processor->audioThread());
    const RealtimeScope realtime;
    audio.begin(block);
    processor->setSideChainConnected(audio.allInputsGiven());
    readTransport(block.transport);
    blockOffset = 0;
    eventIndex = 0;
    bool silent = true;
    do {
        std::uint32_t end = readEvents(block.in_events, block.frames_count);
        // A host that breaks its promise of the longest block gets more spans, not silence beyond its end.
        end = std::min(end, blockOffset + static_cast<std::uint32_t>(audio.longestSpan()));
        const std::uint32_t frames = end - blockOffset;
        std::uint32_t flags = audio.allSilent() ? GenericPluginProcessor::inputSilent : 0;
        processor->process(audio.buffers(), frames, flags);
        silent = silent && (flags & GenericPluginProcessor::outputSilent) != 0;
        audio.advance(frames);
        if (end == blockOffset)
            break; // an empty block, or nothing was prepared
        blockOffset = end;
    } while (blockOffset < block.frames_count);
    audio.silenceFurtherOutputs(block);
    if (block.audio_outputs != nullptr && block.audio_outputs_count > 0 &&
        block.audio_outputs[0].channel_count == audio.buffers().outputs.size())
        block.audio_outputs[0].constant_mask = silent ? everyChannel : 0;
    flushOutputEvents(block.out_events);
    return CLAP_PROCESS_CONTINUE;
}

void ClapPluginAdapter::readTransport(const clap_event_transport* transport) noexcept REALTIME {
    double tempo = 120.0;
    double beats = 0.0;
    bool playing = false;
    if (transport != nullptr) {
        if ((transport->flags & CLAP_TRANSPORT_HAS_TEMPO) != 0)
            tempo = transport->tempo;
        if ((transport->flags & CLAP_TRANSPORT_HAS_BEATS_TIMELINE) != 0)
            beats = static_cast<double>(transport->song_pos_beats) / static_cast<double>(CLAP_BEATTIME_FACTOR);
        playing = (transport->flags & CLAP_TRANSPORT_IS_PLAYING) != 0;
    }
    processor->setTransport(tempo, beats, playing);
}

// Gives the position of the next parameter change behind blockOffset, or frames. Changes at blockOffset are applied.
std::uint32_t ClapPluginAdapter::readEvents(const clap_input_events* list, std::uint32_t frames) noexcept REALTIME {
    if (list == nullptr || list->size == nullptr || list->get == nullptr)
        return frames;
    const std::uint32_t count = trustedRealtime([&] { return list->size(list); });
    for (; eventIndex < count; ++eventIndex) {
        const clap_event_header* const header = trustedRealtime([&] { return list->get(list, eventIndex); });
        if (header == nullptr || header->space_id != CLAP_CORE_EVENT_SPACE_ID)
            continue;
        if (header->type != CLAP_EVENT_PARAM_VALUE) {
            readMidi(*header);
            continue;
        }
        if (header->time > blockOffset)
            return std::min(header->time, frames);
        if (header->time < blockOffset)
            continue;
        const auto& change = *reinterpret_cast<const clap_event_param_value*>(header);
        if (change.param_id < static_cast<clap_id>(plugin->parameterCount()))
            automate(static_cast<std::int32_t>(change.param_id), static_cast<float>(change.value));
    }
    return frames;
}

void ClapPluginAdapter::readMidi(const clap_event_header& header) noexcept REALTIME {
    MidiMessage message;
    if (header.type == CLAP_EVENT_MIDI) {
        const auto& midi = reinterpret_cast<const clap_event_midi&>(header);
        message.status = midi.data[0];
        message.data1 = midi.data[1];
        message.data2 = midi.data[2];
    } else if (header.type == CLAP_EVENT_NOTE_ON || header.type == CLAP_EVENT_NOTE_OFF) {
        const auto& note = reinterpret_cast<const clap_event_note&>(header);
        const unsigned status = header.type == CLAP_EVENT_NOTE_ON ? 0x90u : 0x80u;
        message.status = static_cast<std::uint8_t>(status | (static_cast<unsigned>(note.channel) & 15u));
        message.data1 = static_cast<std::uint8_t>(note.key);
        const double velocity = note.velocity > 0.0 ? std::min(note.velocity, 1.0) : 0.0; // 0 also for not-a-number
        message.data2 = static_cast<std::uint8_t>(velocity * 127.0);
    } else {
        return;
    }
    message.offset = static_cast<std::int32_t>(header.time) - static_cast<std::int32_t>(blockOffset);
    processor->receiveHostMidi(message);
}

void ClapPluginAdapter::flush(const clap_input_events* in, const clap_output_events* out) noexcept REALTIME {
    if (!hasHalves())
        return;
    {
        const AudioThreadMark::Scope onAudioThread(processor->audioThread());
        const RealtimeScope realtime;
        blockOffset = 0;
        eventIndex = 0;
        readEvents(in, 0);
    }
    flushOutputEvents(out);
}

void ClapPluginAdapter::postParameterValue(std::int32_t id, float value) noexcept {
    OutputEvent event{};
    event.value = {};
    event.value.header = {sizeof(clap_event_param_value), 0, CLAP_CORE_EVENT_SPACE_ID, CLAP_EVENT_PARAM_VALUE, 0};
    event.value.param_id = static_cast<clap_id>(id);
    event.value.note_id = -1;
    event.value.value = static_cast<double>(value);
    // A full queue drops the event: the value stays in the parameter, and the next save gives it.
    if (processor != nullptr && processor->audioThread().isCurrent())
        static_cast<void>(outputEvents.pushRealtime(event));
    else
        static_cast<void>(clapGuard(false, [&] { return outputEvents.push(event); }));
}

void ClapPluginAdapter::flushOutputEvents(const clap_output_events* out) noexcept REALTIME {
    if (out == nullptr || out->try_push == nullptr)
        return;
    OutputEvent event{};
    while (outputEvents.pop(event))
        trustedRealtime([&] { return out->try_push(out, &event.header); }); // a refused event is not tried again
}

// The main thread

void ClapPluginAdapter::requestDrain() noexcept REALTIME {
    if (!callbackAsked.exchange(true) && clapHost.request_callback != nullptr)
        trustedRealtime([this] { clapHost.request_callback(&clapHost); });
}

void ClapPluginAdapter::onMainThread() {
    if (!hasHalves())
        return;
    callbackAsked.store(false); // first: what is posted from here on asks again
    plugin->drain();
    outputEvents.reserve();
    processor->reserveQueues();
}

void ClapPluginAdapter::latencyChanged() {
    host.latencyChanged();
}

void ClapPluginAdapter::stateChanged(std::int32_t kind) {
    if (kind == GenericPlugin::presetLoaded) {
        if (const std::string& path = plugin->currentPreset().path(); !path.empty())
            host.presetLoaded(path.c_str());
        if (!host.hasParams())
            return;
        host.rescanValues();
        host.requestFlush();
    }
    host.markDirty();
}

bool ClapPluginAdapter::saveState(const clap_ostream& stream) {
    std::ostringstream bytes;
    return plugin->writeParameterBlock(bytes) && plugin->writeState(bytes) && writeClapStream(stream, bytes.str());
}

bool ClapPluginAdapter::loadState(const clap_istream& stream) {
    std::string bytes;
    if (!readClapStream(stream, bytes))
        return false;
    std::istringstream source(bytes);
    bool begun = false;
    const bool read = plugin->readParameterBlock(source, begun);
    if (!begun)
        return false;
    {
        const ScopedLock guard(*lock);
        pushAllParameters(GenericPlugin::allValuesAtOnce); // silently: the host gave these values
    }
    const bool whole = read && plugin->readState(source);
    host.rescanValues();
    return whole;
}

bool ClapPluginAdapter::loadPreset(const char* path) {
    const std::string error = plugin->loadPresetFile(path);
    if (!error.empty()) // a success was told when the preset was taken
        host.presetFailed(path, error.c_str());
    return error.empty();
}

void ClapPluginAdapter::nameAfterTrack(bool tellHost) {
    std::string name;
    if (plugin->info.has(GenericPluginInfo::instanceNames) && host.trackName(name))
        plugin->setInstanceName(name, tellHost);
}

bool ClapPluginAdapter::selectLayout(int layout) {
    if (active)
        return false;
    changeLayout(layout);
    rebuildPorts();
    return true;
}

void ClapPluginAdapter::rebuildPorts() {
    ports = clapInputPorts(*plugin);
    tailLength = processor->silenceTail();
    audio.setShape(ports, outputPort().channel_count);
}

clap_audio_port_info ClapPluginAdapter::outputPort() const {
    return clapOutputPort(*plugin);
}

const void* ClapPluginAdapter::extension(const char* id) const noexcept {
    if (!hasHalves() || id == nullptr)
        return nullptr;
    return clapExtensionTable(id);
}
