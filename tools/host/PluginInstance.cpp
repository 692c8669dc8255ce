#include "tools/host/PluginInstance.h"

#include "base/ReleaseAssert.h"
#include "tools/host/EventList.h"
#include "tools/host/Failure.h"

namespace {

// A plug-in that asks for a callback in every callback must not hold up the host.
constexpr int mostCallbacks = 1000;

} // namespace

PluginInstance::PluginInstance(const PluginLibrary& library, const clap_plugin_descriptor& wanted, HostSide& hostSide)
    : description(wanted), side(hostSide) {
    side.setAudioThread(audio.id());
    const std::string name = description.name;
    plugin = library.factory().create_plugin(&library.factory(), side.clap(), description.id);
    if (plugin == nullptr)
        throw Failure(name + " could not be created");
    if (!plugin->init(plugin)) {
        plugin->destroy(plugin);
        throw Failure(name + " could not be initialised");
    }
    state = State::inactive;
    serve();
}

PluginInstance::~PluginInstance() {
    rest();
    plugin->destroy(plugin);
}

void PluginInstance::activate(double sampleRate, std::uint32_t maxFrames) {
    release_assert(state == State::inactive);
    side.takeRestart(); // what was asked for before is granted by this
    if (!plugin->activate(plugin, sampleRate, 1, maxFrames))
        throw Failure(std::string(description.name) + " cannot work at this sample rate or block size");
    state = State::active;
    side.setActive(true);
    activeRate = sampleRate;
    activeFrames = maxFrames;
}

void PluginInstance::deactivate() {
    release_assert(state == State::active);
    plugin->deactivate(plugin);
    side.setActive(false);
    state = State::inactive;
}

void PluginInstance::startProcessing() {
    release_assert(state == State::active);
    bool started = false;
    audio.run([&] { started = plugin->start_processing(plugin); });
    if (!started)
        throw Failure(std::string(description.name) + " refused to start processing");
    state = State::processing;
}

void PluginInstance::stopProcessing() {
    release_assert(state == State::processing);
    audio.run([&] { plugin->stop_processing(plugin); });
    state = State::active;
}

void PluginInstance::reset() {
    release_assert(state == State::active || state == State::processing);
    audio.run([&] { plugin->reset(plugin); });
}

void PluginInstance::rest() {
    if (state == State::processing)
        stopProcessing();
    if (state == State::active)
        deactivate();
}

void PluginInstance::flush(const clap_input_events& events) {
    release_assert(state == State::inactive);
    const auto* params = extension<clap_plugin_params>(CLAP_EXT_PARAMS);
    if (params == nullptr)
        return;
    OutputEvents out(side);
    side.takeFlush();
    params->flush(plugin, &events, out.clap());
}

void PluginInstance::serve() {
    for (int i = 0; i < mostCallbacks && side.takeCallback(); ++i)
        plugin->on_main_thread(plugin);
    // While processing, the next block takes and gives the events that a flush would.
    if (state == State::inactive && side.takeFlush())
        flush(*EventList().clap());
    if (state >= State::active && side.takeRestart()) {
        const bool wasProcessing = state == State::processing;
        if (wasProcessing)
            stopProcessing();
        deactivate();
        activate(activeRate, activeFrames);
        if (wasProcessing)
            startProcessing();
    }
}

std::uint32_t PluginInstance::latency() const {
    const auto* table = extension<clap_plugin_latency>(CLAP_EXT_LATENCY);
    return table == nullptr ? 0 : table->get(plugin);
}

std::uint32_t PluginInstance::tail() const {
    const auto* table = extension<clap_plugin_tail>(CLAP_EXT_TAIL);
    return table == nullptr ? 0 : table->get(plugin);
}
