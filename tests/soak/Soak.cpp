#include "tests/soak/Soak.h"

#include "tests/soak/SoakAudio.h"
#include "tests/soak/SoakRandom.h"
#include "tests/soak/SoakTasks.h"
#include "tests/support/ClapTestHost.h"
#include "tests/support/TemporaryHome.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

constexpr std::array<double, 11> rates{8000.0,  11025.0, 22050.0,  32000.0,  44100.0, 48000.0,
                                       88200.0, 96000.0, 192000.0, 384000.0, 768000.0};
constexpr std::size_t everyDayRates = 8; // of them

// Controllers of all numbers, each with another target.
std::string controllerMap(SoakRandom& random) {
    std::string bytes("TVCM\1\0\0\0", 8);
    for (int controller = 0; controller < 128; ++controller) {
        const std::uint32_t target = random.below(380);
        for (int shift = 0; shift < 32; shift += 8)
            bytes += static_cast<char>(target >> shift);
    }
    return bytes;
}

std::vector<std::string> presetsBelow(const std::string& folder) {
    std::vector<std::string> found;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
        if (entry.path().extension() == ".tvp")
            found.push_back(entry.path().string());
    std::sort(found.begin(), found.end());
    return found;
}

class OneInstance {
public:
    OneInstance(const ClapTestLibrary& library, const std::string& homeFolder, SoakRandom& source)
        : random(source)
        , host(pickOffers(source))
        , plugin(make(library))
        , audio(plugin, SoakRandom(source.bits()))
        , tasks(plugin, host, presetsBelow(homeFolder), SoakRandom(source.bits())) {}
    ~OneInstance() { plugin->destroy(plugin); }
    OneInstance(const OneInstance&) = delete;
    OneInstance& operator=(const OneInstance&) = delete;

    // From activate to deactivate. Gives the seconds. The rates and layouts of every day come oftenest: the others cost
    // up to a hundred times as much.
    double activation(bool twoThreads) {
        const auto& configs = *static_cast<const clap_plugin_audio_ports_config*>(
            plugin->get_extension(plugin, CLAP_EXT_AUDIO_PORTS_CONFIG));
        configs.select(plugin, random.below(random.chance(0.5) ? 2 : configs.count(plugin)));
        flush();
        const bool any = random.chance(0.25);
        const double rate = any && random.chance(0.5)
                                ? random.between(8000.0, 768000.0)
                                : random.pick(std::span<const double>(rates).first(any ? rates.size() : everyDayRates));
        const auto maxFrames = static_cast<std::uint32_t>(std::exp2(random.between(0.0, 13.0)));
        audio.prepare(rate, maxFrames);
        if (!plugin->activate(plugin, rate, 1, maxFrames))
            throw std::runtime_error("not activated");
        const double seconds = random.between(0.02, 0.6);
        if (twoThreads)
            runApart(seconds);
        else
            audio.run(seconds, [this] {
                if (random.chance(0.03))
                    tasks.runOne();
            });
        plugin->deactivate(plugin);
        tasks.answerCallback();
        return seconds;
    }

    void add(Soak::Result& result) const {
        ++result.instances;
        result.blocks += audio.getBlocks();
        result.events += audio.getEvents();
        result.statesLoaded += tasks.getStatesLoaded();
        result.presetsLoaded += tasks.getPresetsLoaded();
        result.fault = audio.getFault();
    }
    bool failed() const { return !audio.getFault().empty(); }

private:
    static ClapTestHost::Offers pickOffers(SoakRandom& random) {
        return random.chance(0.7)   ? ClapTestHost::Offers::everything
               : random.chance(0.5) ? ClapTestHost::Offers::nothing
                                    : ClapTestHost::Offers::emptyTables;
    }

    const clap_plugin* make(const ClapTestLibrary& library) {
        const clap_plugin_factory& factory = library.factory();
        const clap_plugin* const made =
            factory.create_plugin(&factory, &host.host, factory.get_plugin_descriptor(&factory, 0)->id);
        if (made == nullptr || !made->init(made))
            throw std::runtime_error("no instance");
        return made;
    }

    void flush() {
        ClapTestEvents events;
        ClapTestOutput taken;
        audio.addSetting(events);
        audio.addStorm(events, 0, random.below(40));
        const auto& params = *static_cast<const clap_plugin_params*>(plugin->get_extension(plugin, CLAP_EXT_PARAMS));
        params.flush(plugin, events.list(), taken.list());
    }

    void runApart(double seconds) {
        std::atomic<bool> ended{false};
        std::thread audioThread([&] {
            audio.run(seconds, [] {});
            ended.store(true);
        });
        while (!ended.load()) {
            tasks.runOne();
            std::this_thread::sleep_for(std::chrono::milliseconds(1 + random.below(4)));
        }
        audioThread.join();
    }

    SoakRandom& random;
    ClapTestHost host;
    const clap_plugin* plugin;
    SoakAudio audio;
    SoakTasks tasks;
};

} // namespace

Soak::Result Soak::run(const char* libraryPath, const Plan& plan) {
    SoakRandom random(plan.seed);
    const TemporaryHome home;
    home.write(".local/share/Tessivane/Zelk 3/MidiControllerMap.tvm", controllerMap(random));
    Result result;
    while (result.seconds < plan.seconds && result.fault.empty()) {
        const ClapTestLibrary library(libraryPath);
        OneInstance instance(library, home.path(), random);
        for (std::uint32_t more = 1 + random.below(8); more > 0 && result.seconds < plan.seconds && !instance.failed();
             --more) {
            result.seconds += instance.activation(plan.twoThreads);
            ++result.activations;
        }
        instance.add(result);
    }
    return result;
}
