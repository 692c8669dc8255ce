// What it costs to start: instances made by the built library as a host makes them, in a home folder of their own.
// Time runs from create_plugin to the end of init, and the memory is what stays in use.
#include "host/clap/Clap.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>
#include <malloc.h>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

class Home {
public:
    Home() : folder((std::filesystem::temp_directory_path() / "zelk-bench-XXXXXX").string()) {
        if (mkdtemp(folder.data()) == nullptr)
            throw std::runtime_error("no temporary folder");
        setenv("HOME", folder.c_str(), 1);
        for (const char* variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME"})
            unsetenv(variable);
    }
    ~Home() {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
    Home(const Home&) = delete;
    Home& operator=(const Home&) = delete;

private:
    std::string folder;
};

const clap_plugin_factory& factory() {
    static const auto* const found = [] {
        void* const library = dlopen(ZELK_PLUGIN_FILE, RTLD_NOW | RTLD_LOCAL);
        const auto* const entry =
            library != nullptr ? static_cast<const clap_plugin_entry*>(dlsym(library, "clap_entry")) : nullptr;
        if (entry == nullptr || !entry->init(ZELK_PLUGIN_FILE))
            throw std::runtime_error("the library does not load");
        return static_cast<const clap_plugin_factory*>(entry->get_factory(CLAP_PLUGIN_FACTORY_ID));
    }();
    return *found;
}

clap_host host() {
    clap_host made{};
    made.clap_version = CLAP_VERSION;
    made.name = "bench_host";
    made.vendor = made.url = made.version = "";
    made.get_extension = [](const clap_host*, const char*) noexcept -> const void* { return nullptr; };
    made.request_restart = made.request_process = made.request_callback = [](const clap_host*) noexcept {};
    return made;
}

const clap_plugin* start() {
    static const clap_host asking = host();
    const clap_plugin* const made =
        factory().create_plugin(&factory(), &asking, factory().get_plugin_descriptor(&factory(), 0)->id);
    if (made == nullptr || !made->init(made))
        throw std::runtime_error("no instance");
    return made;
}

double bytesInUse() {
    const struct mallinfo2 facts = mallinfo2();
    return static_cast<double>(facts.uordblks + facts.hblkhd);
}

void measure(benchmark::State& state, std::size_t count) {
    std::vector<const clap_plugin*> made(count);
    double inUse = 0.0;
    for (auto _ : state) {
        state.PauseTiming();
        const double usedBefore = bytesInUse();
        state.ResumeTiming();
        for (const clap_plugin*& instance : made)
            instance = start();
        state.PauseTiming();
        inUse = std::max(inUse, bytesInUse() - usedBefore);
        for (const clap_plugin* const instance : made)
            instance->destroy(instance);
        state.ResumeTiming();
    }
    const auto instances = static_cast<double>(count);
    state.counters["s/instance"] =
        benchmark::Counter(instances, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    state.counters["KiB/instance"] = inUse / instances / 1024.0;
}

// The first of a user's life: it writes the settings and unpacks the factory presets.
void firstStartOfAUser(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        {
            const Home home;
            state.ResumeTiming();
            const clap_plugin* const instance = start();
            state.PauseTiming();
            instance->destroy(instance);
        }
        state.ResumeTiming();
    }
}

// The first of a process makes what all share.
void firstOfProcess(benchmark::State& state) {
    const Home home;
    const clap_plugin* const before = start();
    before->destroy(before);
    measure(state, 1);
}

void further(benchmark::State& state) {
    const Home home;
    const clap_plugin* const first = start();
    measure(state, static_cast<std::size_t>(state.range(0)));
    first->destroy(first);
}

BENCHMARK(firstStartOfAUser)->Unit(benchmark::kMillisecond);
BENCHMARK(firstOfProcess)->Unit(benchmark::kMillisecond);
BENCHMARK(further)->Arg(1)->Arg(10)->Arg(100)->Unit(benchmark::kMillisecond);

} // namespace
