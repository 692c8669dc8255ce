#include "tests/soak/Crowd.h"

#include "tests/support/ClapTestHost.h"
#include "tests/support/TemporaryHome.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <malloc.h>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr clap_id widestLayout = 28; // 9.1.6
constexpr std::uint32_t frames = 256;
constexpr int rounds = 40;

double bytesInUse() {
    const struct mallinfo2 facts = mallinfo2();
    return static_cast<double>(facts.uordblks + facts.hblkhd);
}

double secondsSince(std::chrono::steady_clock::time_point begin) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

// Each band at its own place, up and down by turns.
void useAllBands(ClapTestInstance& instance) {
    const auto* params = instance.extension<clap_plugin_params>(CLAP_EXT_PARAMS);
    clap_param_info info{};
    for (std::uint32_t index = 0; index < params->count(instance.plugin); ++index) {
        if (!params->get_info(instance.plugin, index, &info))
            continue;
        for (int band = 1; band <= 24; ++band) {
            const std::string name = "Band " + std::to_string(band) + " ";
            if (info.name == name + "Used")
                instance.events.addValue(0, info.id, 1.0);
            else if (info.name == name + "Frequency")
                instance.events.addValue(0, info.id, 6.0 + 0.3 * band);
            else if (info.name == name + "Gain")
                instance.events.addValue(0, info.id, band % 2 == 0 ? 4.0 : -4.0);
        }
    }
}

} // namespace

Crowd Crowd::run(const char* libraryPath, std::size_t instances) {
    const TemporaryHome home;
    const ClapTestLibrary library(libraryPath);
    ClapTestHost host;
    const ClapTestInstance first(library, host); // pays for what all share
    Crowd result;
    const double before = bytesInUse();
    std::vector<std::unique_ptr<ClapTestInstance>> all(instances);
    const auto begin = std::chrono::steady_clock::now();
    for (std::unique_ptr<ClapTestInstance>& one : all) {
        one = std::make_unique<ClapTestInstance>(library, host);
        one->extension<clap_plugin_audio_ports_config>(CLAP_EXT_AUDIO_PORTS_CONFIG)->select(one->plugin, widestLayout);
        one->start(48000.0, frames);
    }
    const auto count = static_cast<double>(instances);
    result.createMs = secondsSince(begin) * 1000.0 / count;

    std::mt19937 random(1);
    for (std::unique_ptr<ClapTestInstance>& one : all) {
        for (std::vector<float>& channel : one->inputs)
            std::generate(channel.begin(), channel.end(),
                          [&] { return static_cast<float>(random() % 2000) * 1e-3f - 1.0f; });
        useAllBands(*one);
        one->process(frames);
        one->events.clear();
    }
    result.bytes = (bytesInUse() - before) / count;
    const auto start = std::chrono::steady_clock::now();
    for (int round = 0; round < rounds; ++round)
        for (std::unique_ptr<ClapTestInstance>& one : all)
            one->process(frames);
    result.nanoseconds = secondsSince(start) * 1e9 / (count * rounds * frames);
    for (const std::unique_ptr<ClapTestInstance>& one : all)
        for (const std::vector<float>& channel : one->outputs)
            result.finite = result.finite && std::all_of(channel.begin(), channel.end(),
                                                         [](float sample) { return std::isfinite(sample); });
    all.clear();
    result.bytesLeft = bytesInUse() - before;
    return result;
}
