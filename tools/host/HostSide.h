// What the plug-in sees of this host: the clap_host with its extensions. Requests are kept until the main thread takes
// them between two blocks; rules that the plug-in breaks are written down.
// Threads: [main] but where the interface allows others.
#pragma once

#include "host/clap/Clap.h"

#include <atomic>
#include <map>
#include <mutex>
#include <string>
#include <thread>

class HostSide {
public:
    struct Settings {
        bool verbose = false;  // print the plug-in's log
        std::string trackName; // empty: the track has none
    };

    explicit HostSide(Settings wanted);
    HostSide(const HostSide&) = delete;
    HostSide& operator=(const HostSide&) = delete;

    const clap_host* clap() const { return &table; }

    void setAudioThread(std::thread::id id) { audioThread = id; } // before the plug-in's init
    void setActive(bool isActive) { active.store(isActive); }

    bool takeCallback() { return callback.exchange(false); }
    bool takeRestart() { return restart.exchange(false); }
    bool takeFlush() { return flush.exchange(false); }
    bool wantsMainThread() const { return callback.load() || restart.load(); } // [any]

    // What the plug-in said about its last preset load; empty: nothing.
    const std::string& presetError() const { return presetMessage; }
    void clearPresetError() { presetMessage.clear(); }

    void complain(const std::string& brokenRule);  // [any]
    std::map<std::string, int> complaints() const; // rule and how often

private:
    struct Callbacks;

    Settings settings;
    clap_host table;
    const std::thread::id mainThread;
    std::thread::id audioThread;
    std::atomic<bool> active{false};
    std::atomic<bool> callback{false}; // set by the plug-in on any thread, taken by main; so are the two below
    std::atomic<bool> restart{false};
    std::atomic<bool> flush{false};
    std::string presetMessage;
    mutable std::mutex lock; // guards broken
    std::map<std::string, int> broken;
};
