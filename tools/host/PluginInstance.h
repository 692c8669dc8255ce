// One instance of a plug-in and its state machine: created, inactive, active, processing, and back. The order of calls
// and the thread of each are kept here, so that nobody above can break them.
// Threads: main, except process ([audio], inside onAudioThread).
#pragma once

#include "host/clap/Clap.h"
#include "tools/host/AudioThread.h"
#include "tools/host/HostSide.h"
#include "tools/host/PluginLibrary.h"

#include <cstdint>
#include <functional>
#include <string>

class PluginInstance {
public:
    PluginInstance(const PluginLibrary& library, const clap_plugin_descriptor& wanted, HostSide& hostSide);
    ~PluginInstance();
    PluginInstance(const PluginInstance&) = delete;
    PluginInstance& operator=(const PluginInstance&) = delete;

    void activate(double sampleRate, std::uint32_t maxFrames); // inactive
    void deactivate();                                         // active
    void startProcessing();                                    // active
    void stopProcessing();                                     // processing
    void reset();                                              // active or processing
    void rest();                                               // from any state to inactive

    // Sends what stands in the list to the parameters, while inactive.
    void flush(const clap_input_events& events);

    // Answers what the plug-in asked for since the last call: on_main_thread, a flush while inactive, a restart.
    void serve();

    void onAudioThread(const std::function<void()>& job) { audio.run(job); }
    std::int32_t process(const clap_process& block) noexcept { return plugin->process(plugin, &block); } // [audio]

    // The plug-in's table of that id, null: not offered.
    template <typename Table>
    const Table* extension(const char* id) const {
        return static_cast<const Table*>(plugin->get_extension(plugin, id));
    }

    std::uint32_t latency() const; // samples, 0 where the plug-in tells nothing
    std::uint32_t tail() const;

    const clap_plugin* clap() const { return plugin; }
    const clap_plugin_descriptor& descriptor() const { return description; }
    HostSide& host() { return side; }

private:
    enum class State { created, inactive, active, processing };

    const clap_plugin_descriptor& description;
    HostSide& side;
    AudioThread audio;
    const clap_plugin* plugin = nullptr;
    State state = State::created;
    double activeRate = 0.0; // of the last activate, for a restart
    std::uint32_t activeFrames = 0;
};
