// One plug-in instance as a CLAP host sees it: the table of callbacks, and what each does to the two halves.
// Threads: as the CLAP rules tag each callback; tagged where it is not the main thread.
#pragma once

#include "base/AsyncEventQueue.h"
#include "base/LockFreeQueue.h"
#include "base/Realtime.h"
#include "host/ClapAudioBlock.h"
#include "host/ClapHostExtensions.h"
#include "host/UnifiedPluginAdapter.h"
#include "host/clap/Clap.h"

#include <atomic>
#include <cstdint>
#include <vector>

class ClapPluginAdapter final : public UnifiedPluginAdapter, private AsyncEventQueue::Carrier {
public:
    ClapPluginAdapter(const clap_host& owningHost,
                      const clap_plugin_descriptor& descriptor); // calls nothing of the host

    const clap_plugin* clapPlugin() const noexcept { return &table; }
    static ClapPluginAdapter& of(const clap_plugin* self) noexcept {
        return *static_cast<ClapPluginAdapter*>(self->plugin_data);
    }

    // Life cycle, from the table.
    bool init();
    bool activate(double sampleRate, std::uint32_t maxFrames);
    void deactivate() noexcept;
    bool startProcessing() noexcept REALTIME;                                                 // [audio]
    void stopProcessing() noexcept REALTIME;                                                  // [audio]
    void reset() noexcept REALTIME;                                                           // [audio]
    std::int32_t process(const clap_process& block) noexcept REALTIME;                        // [audio]
    void flush(const clap_input_events* in, const clap_output_events* out) noexcept REALTIME; // [audio or main]
    const void* extension(const char* id) const noexcept;                                     // [any]
    void onMainThread();

    // For the extension tables.
    GenericPlugin& editorSide() noexcept { return *plugin; }
    GenericPluginProcessor& audioSide() noexcept { return *processor; }
    const ClapHostExtensions& hostExtensions() const noexcept { return host; }
    const std::vector<clap_audio_port_info>& inputPorts() const noexcept { return ports; }
    clap_audio_port_info outputPort() const;
    std::int32_t tail() const noexcept { return tailLength; } // samples, -1: for ever
    bool isActive() const noexcept { return active; }
    bool selectLayout(int layout); // false: the instance is active
    bool saveState(const clap_ostream& stream);
    bool loadState(const clap_istream& stream);
    bool loadPreset(const char* path);
    void nameAfterTrack(bool tellHost); // that the state has changed with the name

    // What the halves call.
    void latencyChanged() override;
    void stateChanged(std::int32_t kind) override;
    void postParameterValue(std::int32_t id, float value) noexcept override; // [any]

private:
    // What can wait for the host; its largest event decides the size.
    union OutputEvent {
        clap_event_header header;
        clap_event_param_value value;
        clap_event_param_gesture gesture;
    };

    ~ClapPluginAdapter() override;
    static void destroy(const clap_plugin* self) noexcept;

    void rebuildPorts();
    void requestDrain() noexcept REALTIME override; // [any]
    void readTransport(const clap_event_transport* transport) noexcept REALTIME;
    std::uint32_t readEvents(const clap_input_events* list, std::uint32_t frames) noexcept REALTIME;
    void readMidi(const clap_event_header& header) noexcept REALTIME;
    void flushOutputEvents(const clap_output_events* out) noexcept REALTIME;

    clap_plugin table;
    const clap_host& clapHost;
    ClapHostExtensions host;
    std::vector<clap_audio_port_info> ports; // inputs
    ClapAudioBlock audio;
    LockFreeQueue<OutputEvent> outputEvents{1024};
    std::atomic<bool> callbackAsked{false}; // until onMainThread has begun; pairs with itself
    std::uint32_t blockOffset = 0;          // samples into the host's block at which the present span starts
    std::uint32_t eventIndex = 0;           // input event at which reading resumes
    std::int32_t tailLength = -1;
    bool active = false;
    bool processing = false;
};
