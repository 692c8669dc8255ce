#include "tools/host/HostSide.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <utility>

struct HostSide::Callbacks {
    static HostSide& of(const clap_host* host) noexcept { return *static_cast<HostSide*>(host->host_data); }

    static void mainOnly(const clap_host* host, const char* what) noexcept {
        if (std::this_thread::get_id() != of(host).mainThread)
            of(host).complain(std::string(what) + " was called off the main thread");
    }

    static void inactiveOnly(const clap_host* host, const char* what) noexcept {
        if (of(host).active.load())
            of(host).complain(std::string(what) + " was called while active");
    }

    static void requestRestart(const clap_host* host) noexcept { of(host).restart.store(true); }
    static void requestProcess(const clap_host*) noexcept {} // this host never puts an instance to sleep
    static void requestCallback(const clap_host* host) noexcept { of(host).callback.store(true); }

    static void paramsRescan(const clap_host* host, std::uint32_t flags) noexcept {
        mainOnly(host, "params.rescan");
        if ((flags & CLAP_PARAM_RESCAN_ALL) != 0)
            inactiveOnly(host, "params.rescan(ALL)");
    }
    static void paramsClear(const clap_host* host, clap_id, std::uint32_t) noexcept { mainOnly(host, "params.clear"); }
    static void paramsRequestFlush(const clap_host* host) noexcept {
        if (std::this_thread::get_id() == of(host).audioThread)
            of(host).complain("params.request_flush was called on the audio thread");
        of(host).flush.store(true);
    }

    static void stateMarkDirty(const clap_host* host) noexcept { mainOnly(host, "state.mark_dirty"); }

    static void latencyChanged(const clap_host* host) noexcept {
        mainOnly(host, "latency.changed");
        inactiveOnly(host, "latency.changed");
    }
    static void tailChanged(const clap_host* host) noexcept {
        if (std::this_thread::get_id() != of(host).audioThread)
            of(host).complain("tail.changed was called off the audio thread");
    }

    static bool isMainThread(const clap_host* host) noexcept {
        return std::this_thread::get_id() == of(host).mainThread;
    }
    static bool isAudioThread(const clap_host* host) noexcept {
        return std::this_thread::get_id() == of(host).audioThread;
    }

    static void log(const clap_host* host, std::int32_t severity, const char* message) noexcept {
        constexpr std::array<const char*, 7> words{
            "debug", "info", "warning", "error", "fatal", "host misbehaving", "plug-in misbehaving"};
        if (of(host).settings.verbose && message != nullptr) {
            const auto index = static_cast<std::size_t>(std::clamp<std::int32_t>(severity, 0, 6));
            std::fprintf(stderr, "[%s] %s\n", words[index], message);
        }
    }

    static bool portsRescanSupported(const clap_host* host, std::uint32_t flag) noexcept {
        mainOnly(host, "audio_ports.is_rescan_flag_supported");
        return flag == CLAP_AUDIO_PORTS_RESCAN_NAMES;
    }
    static void portsRescan(const clap_host* host, std::uint32_t flags) noexcept {
        mainOnly(host, "audio_ports.rescan");
        if ((flags & ~CLAP_AUDIO_PORTS_RESCAN_NAMES) != 0)
            of(host).complain("audio_ports.rescan was called with a flag that this host does not support");
    }
    static void configsRescan(const clap_host* host) noexcept { mainOnly(host, "audio_ports_config.rescan"); }

    static bool trackInfo(const clap_host* host, clap_track_info* info) noexcept {
        mainOnly(host, "track_info.get");
        *info = {};
        const std::string& name = of(host).settings.trackName;
        if (name.empty())
            return true;
        info->flags = CLAP_TRACK_INFO_HAS_TRACK_NAME;
        name.copy(info->name, CLAP_NAME_SIZE - 1);
        return true;
    }

    static void presetError(const clap_host* host, std::uint32_t, const char*, const char*, std::int32_t osError,
                            const char* message) noexcept {
        mainOnly(host, "preset_load.on_error");
        of(host).presetMessage = message != nullptr && *message != '\0' ? message
                                 : osError != 0                         ? std::strerror(osError)
                                                                        : "";
    }
    static void presetLoaded(const clap_host* host, std::uint32_t, const char*, const char*) noexcept {
        mainOnly(host, "preset_load.loaded");
    }

    static constexpr clap_host_params params{paramsRescan, paramsClear, paramsRequestFlush};
    static constexpr clap_host_state state{stateMarkDirty};
    static constexpr clap_host_latency latency{latencyChanged};
    static constexpr clap_host_tail tail{tailChanged};
    static constexpr clap_host_thread_check threadCheck{isMainThread, isAudioThread};
    static constexpr clap_host_log logging{log};
    static constexpr clap_host_audio_ports ports{portsRescanSupported, portsRescan};
    static constexpr clap_host_audio_ports_config configs{configsRescan};
    static constexpr clap_host_track_info track{trackInfo};
    static constexpr clap_host_preset_load preset{presetError, presetLoaded};

    static const void* getExtension(const clap_host*, const char* id) noexcept {
        struct Offer {
            std::string_view id;
            const void* extension;
        };
        static constexpr std::array<Offer, 10> offers{{{CLAP_EXT_PARAMS, &params},
                                                       {CLAP_EXT_STATE, &state},
                                                       {CLAP_EXT_LATENCY, &latency},
                                                       {CLAP_EXT_TAIL, &tail},
                                                       {CLAP_EXT_THREAD_CHECK, &threadCheck},
                                                       {CLAP_EXT_LOG, &logging},
                                                       {CLAP_EXT_AUDIO_PORTS, &ports},
                                                       {CLAP_EXT_AUDIO_PORTS_CONFIG, &configs},
                                                       {CLAP_EXT_TRACK_INFO, &track},
                                                       {CLAP_EXT_PRESET_LOAD, &preset}}};
        const auto found = std::find_if(offers.begin(), offers.end(),
                                        [id](const Offer& offer) { return id != nullptr && offer.id == id; });
        return found == offers.end() ? nullptr : found->extension;
    }
};

HostSide::HostSide(Settings wanted)
    : settings(std::move(wanted))
    , table{CLAP_VERSION,
            this,
            "zelk-host",
            "Tessivane",
            "",
            ZELK_HOST_VERSION,
            Callbacks::getExtension,
            Callbacks::requestRestart,
            Callbacks::requestProcess,
            Callbacks::requestCallback}
    , mainThread(std::this_thread::get_id()) {}

void HostSide::complain(const std::string& brokenRule) {
    const std::lock_guard guard(lock);
    ++broken[brokenRule];
}

std::map<std::string, int> HostSide::complaints() const {
    const std::lock_guard guard(lock);
    return broken;
}
