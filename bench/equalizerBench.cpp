// The whole equalizer as the built library runs it in a host: nanoseconds a stereo frame at 48 kHz, beside a memory
// copy and the reference loop of 24 sections. Ratios inside one run are what counts.
#include "bench/BiquadBed.h"
#include "host/clap/Clap.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstring>
#include <dlfcn.h>
#include <functional>
#include <map>
#include <numeric>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

constexpr double sampleRate = 48000.0;
constexpr std::size_t maxFrames = 1024;

const clap_plugin_factory& factory() {
    static const auto* const found = [] {
        void* const library = dlopen(ZELK_PLUGIN_FILE, RTLD_NOW | RTLD_LOCAL);
        if (library == nullptr)
            throw std::runtime_error(dlerror());
        const auto* const entry = static_cast<const clap_plugin_entry*>(dlsym(library, "clap_entry"));
        if (!entry->init(ZELK_PLUGIN_FILE))
            throw std::runtime_error("the library does not start");
        return static_cast<const clap_plugin_factory*>(entry->get_factory(CLAP_PLUGIN_FACTORY_ID));
    }();
    return *found;
}

// A running instance, its ports bound to memory once, so that a block costs the host next to nothing.
class Equalizer {
public:
    explicit Equalizer(clap_id layout = 1) {
        host.clap_version = {1, 1, 10};
        host.name = host.vendor = host.url = host.version = "bench";
        host.get_extension = [](const clap_host*, const char*) noexcept -> const void* { return nullptr; };
        host.request_restart = host.request_process = host.request_callback = [](const clap_host*) noexcept {};
        plugin = factory().create_plugin(&factory(), &host, factory().get_plugin_descriptor(&factory(), 0)->id);
        plugin->init(plugin);
        static_cast<const clap_plugin_audio_ports_config*>(plugin->get_extension(plugin, CLAP_EXT_AUDIO_PORTS_CONFIG))
            ->select(plugin, layout);
        params = static_cast<const clap_plugin_params*>(plugin->get_extension(plugin, CLAP_EXT_PARAMS));
        clap_param_info info{};
        for (std::uint32_t index = 0; index < params->count(plugin); ++index)
            if (params->get_info(plugin, index, &info))
                ids.emplace(info.name, info.id);
        const auto* const ports =
            static_cast<const clap_plugin_audio_ports*>(plugin->get_extension(plugin, CLAP_EXT_AUDIO_PORTS));
        clap_audio_port_info port{};
        ports->get(plugin, 0, false, &port);
        channels = port.channel_count;
        for (auto* const memory : {&inputs, &sideChain, &outputs})
            memory->assign(channels, std::vector<float>(maxFrames, 0.0f));
        bind(inputs, inputPointers);
        bind(sideChain, sideChainPointers);
        bind(outputs, outputPointers);
        boundInputs[0] = {inputPointers.data(), nullptr, channels, 0, 0};
        boundInputs[1] = {sideChainPointers.data(), nullptr, channels, 0, 0};
        output = {outputPointers.data(), nullptr, channels, 0, 0};
        std::uint32_t random = 1;
        for (auto& channel : inputs)
            for (float& sample : channel) {
                random = random * 1664525u + 1013904223u; // the generator of Numerical Recipes
                sample = 0.2f * (static_cast<float>(random >> 8) * 0x1p-24f - 0.5f);
            }
        eventList.ctx = this;
        eventList.size = [](const clap_input_events* list) noexcept {
            return static_cast<std::uint32_t>(static_cast<Equalizer*>(list->ctx)->events.size());
        };
        eventList.get = [](const clap_input_events* list, std::uint32_t index) noexcept -> const clap_event_header* {
            return &static_cast<Equalizer*>(list->ctx)->events[index].header;
        };
        taken.try_push = [](const clap_output_events*, const clap_event_header*) noexcept { return true; };
        plugin->activate(plugin, sampleRate, 1, maxFrames);
        plugin->start_processing(plugin);
    }
    ~Equalizer() {
        plugin->stop_processing(plugin);
        plugin->deactivate(plugin);
        plugin->destroy(plugin);
    }
    Equalizer(const Equalizer&) = delete;
    Equalizer& operator=(const Equalizer&) = delete;

    void set(std::string_view name, double value) {
        const auto found = ids.find(name);
        if (found == ids.end())
            throw std::runtime_error(std::string(name));
        clap_event_param_value event{};
        event.header = {sizeof event, 0, CLAP_CORE_EVENT_SPACE_ID, CLAP_EVENT_PARAM_VALUE, 0};
        event.param_id = found->second;
        event.note_id = -1;
        event.value = value;
        events.push_back(event);
    }

    void useBand(int number, double log2Hz, double gainDb, int slope, double dynamicRange = 0.0) {
        const std::string band = "Band " + std::to_string(number);
        set(band + " Frequency", log2Hz);
        set(band + " Gain", gainDb);
        set(band + " Slope", slope);
        set(band + " Dynamic Range", dynamicRange);
        set(band + " Used", 1.0);
    }

    void useBands(int count, int slope, double dynamicRange = 0.0) {
        for (int number = 1; number <= count; ++number)
            useBand(number, 6.0 + 8.0 * number / 24.0, number % 2 == 0 ? 3.0 : -3.0, slope, dynamicRange);
    }

    void process(std::size_t frames) {
        clap_process block{};
        block.steady_time = -1;
        block.frames_count = static_cast<std::uint32_t>(frames);
        block.audio_inputs = boundInputs.data();
        block.audio_inputs_count = 2;
        block.audio_outputs = &output;
        block.audio_outputs_count = 1;
        block.in_events = &eventList;
        block.out_events = &taken;
        plugin->process(plugin, &block);
        events.clear();
    }

    void settle() {
        for (int i = 0; i < 400; ++i)
            process(256);
    }

private:
    static void bind(std::vector<std::vector<float>>& memory, std::vector<float*>& pointers) {
        for (auto& channel : memory)
            pointers.push_back(channel.data());
    }

    clap_host host{};
    const clap_plugin* plugin = nullptr;
    const clap_plugin_params* params = nullptr;
    std::map<std::string, clap_id, std::less<>> ids;
    std::uint32_t channels = 0;
    std::vector<std::vector<float>> inputs, sideChain, outputs;
    std::vector<float*> inputPointers, sideChainPointers, outputPointers;
    std::array<clap_audio_buffer, 2> boundInputs{};
    clap_audio_buffer output{};
    std::vector<clap_event_param_value> events;
    clap_input_events eventList{};
    clap_output_events taken{};
};

using Setting = std::function<void(Equalizer&)>;

void equalizer(benchmark::State& state, const Setting& set, std::size_t block, clap_id layout) {
    Equalizer one(layout);
    set(one);
    one.settle();
    for (auto _ : state)
        one.process(block);
    countFrames(state, block);
}

// A band that is dragged: a new value with every block.
void dragged(benchmark::State& state, const Setting& set, std::size_t block) {
    Equalizer one;
    set(one);
    one.settle();
    double phase = 0.0;
    for (auto _ : state) {
        phase += 0.01;
        one.set("Band 1 Frequency", 9.0 + 2.0 * std::sin(phase));
        one.process(block);
    }
    countFrames(state, block);
}

// How even the load is: the slowest block against the mean, each block by the quickest of several equal passes, since
// the machine's own noise is far above what is looked for.
void evenness(benchmark::State& state, const Setting& set, std::size_t block, bool drags) {
    using Clock = std::chrono::steady_clock;
    constexpr int passes = 9;
    const std::size_t blocks = 96000 / block;
    std::vector<double> quickest(blocks, 1e9);
    for (auto _ : state) {
        for (int pass = 0; pass < passes; ++pass) {
            Equalizer one;
            set(one);
            one.settle();
            for (std::size_t i = 0; i < blocks; ++i) {
                if (drags)
                    one.set("Band 1 Frequency", 9.0 + 2.0 * std::sin(0.01 * static_cast<double>(i)));
                const auto begin = Clock::now();
                one.process(block);
                quickest[i] = std::min(quickest[i], std::chrono::duration<double>(Clock::now() - begin).count());
            }
        }
    }
    const double sum = std::accumulate(quickest.begin(), quickest.end(), 0.0);
    state.counters["worstToMean"] =
        *std::max_element(quickest.begin(), quickest.end()) * static_cast<double>(blocks) / sum;
    state.counters["nsPerFrame"] = sum / static_cast<double>(blocks * block) * 1e9;
}

void copying(benchmark::State& state) {
    std::array<std::array<float, blockSize>, 4> memory{};
    benchmark::DoNotOptimize(memory.data());
    for (auto _ : state) {
        std::memcpy(memory[2].data(), memory[0].data(), sizeof memory[0]);
        std::memcpy(memory[3].data(), memory[1].data(), sizeof memory[1]);
        benchmark::ClobberMemory();
    }
    countFrames(state, blockSize);
}

#if defined(__SSE2__)
void reference(benchmark::State& state) {
    Bed bed(directRows(24));
    const std::uint32_t length = blockSize;
    for (auto _ : state) {
        referenceLoop({.sections = bed.sections.data(),
                       .sectionCount = bed.sections.size(),
                       .runLengths = &length,
                       .runCount = 1,
                       .rowStride = 0,
                       .input = {bed.sound[0].data(), bed.sound[1].data()},
                       .output = {bed.result[0].data(), bed.result[1].data()}});
        benchmark::ClobberMemory();
    }
    countFrames(state, blockSize);
}
#endif

Setting inMode(int mode, int resolution, Setting rest) {
    return [=](Equalizer& one) {
        one.set("Processing Mode", mode);
        one.set("Processing Resolution", resolution);
        rest(one);
    };
}

void addAll() {
    constexpr int db12 = 1, db96 = 8;
    const auto add = [](const std::string& name, const Setting& set, std::size_t block, clap_id layout = 1) {
        benchmark::RegisterBenchmark((name + "/block:" + std::to_string(block)).c_str(), equalizer, set, block, layout);
    };
    const Setting nothing = [](Equalizer&) {};
    benchmark::RegisterBenchmark("copy", copying);
#if defined(__SSE2__)
    benchmark::RegisterBenchmark("reference/24", reference);
#endif
    for (const std::size_t block : {std::size_t{64}, std::size_t{256}}) {
        add("noBand", nothing, block);
        add(
            "bypassed", [](Equalizer& one) { one.set("Bypass", 1.0); }, block);
        for (const int count : {1, 2, 8, 24})
            add(
                "bells/" + std::to_string(count), [=](Equalizer& one) { one.useBands(count, db12); }, block);
        add(
            "bells96/24", [=](Equalizer& one) { one.useBands(24, db96); }, block);
        add(
            "dynamic/24", [=](Equalizer& one) { one.useBands(24, db12, -6.0); }, block);
        add(
            "surround/24", [=](Equalizer& one) { one.useBands(24, db12); }, block, 28);
        const char* const resolutions[] = {"low", "medium", "high", "veryHigh", "maximum"};
        add("natural/24", inMode(1, 0, [=](Equalizer& one) { one.useBands(24, db12); }), block);
        add("natural/0", inMode(1, 0, nothing), block);
        for (int resolution = 0; resolution < 5; ++resolution)
            add(std::string("linear/24/") + resolutions[resolution],
                inMode(2, resolution, [=](Equalizer& one) { one.useBands(24, db12); }), block);
        const Setting medium = inMode(2, 1, [=](Equalizer& one) { one.useBands(24, db12); });
        const Setting maximum = inMode(2, 4, [=](Equalizer& one) { one.useBands(24, db12); });
        const Setting natural = inMode(1, 0, [=](Equalizer& one) { one.useBands(24, db12); });
        const Setting moving = inMode(2, 1, [=](Equalizer& one) { one.useBands(24, db12, -6.0); });
        const std::string suffix = "/block:" + std::to_string(block);
        for (const auto& [name, set] :
             {std::pair{"zeroLatency", Setting([=](Equalizer& one) { one.useBands(24, db12); })},
              std::pair{"natural", natural}, std::pair{"medium", medium}, std::pair{"maximum", maximum}}) {
            benchmark::RegisterBenchmark(("dragged/" + std::string(name) + suffix).c_str(), dragged, set, block);
            for (const bool drags : {false, true})
                benchmark::RegisterBenchmark(
                    ("even/" + std::string(name) + (drags ? "/dragged" : "/steady") + suffix).c_str(), evenness, set,
                    block, drags)
                    ->Iterations(1);
        }
        benchmark::RegisterBenchmark(("even/mediumDynamic" + suffix).c_str(), evenness, moving, block, false)
            ->Iterations(1);
        add("linearDynamic/24/medium", moving, block);
    }
}

} // namespace

int main(int count, char** arguments) {
    addAll();
    benchmark::Initialize(&count, arguments);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
