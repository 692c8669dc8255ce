#include "tests/soak/SoakTasks.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

constexpr std::size_t mostStates = 8;

// A stream that takes and gives what it likes, down to single bytes.
struct Stream {
    std::string bytes;
    std::uint64_t piece;
    std::size_t position = 0;
    clap_ostream out{this, [](const clap_ostream* self, const void* data, std::uint64_t size) noexcept {
                         auto& stream = *static_cast<Stream*>(self->ctx);
                         const std::uint64_t taken = std::min(size, stream.piece);
                         stream.bytes.append(static_cast<const char*>(data), taken);
                         return static_cast<std::int64_t>(taken);
                     }};
    clap_istream in{this, [](const clap_istream* self, void* data, std::uint64_t size) noexcept {
                        auto& stream = *static_cast<Stream*>(self->ctx);
                        const std::size_t given =
                            stream.bytes.copy(static_cast<char*>(data), std::min(size, stream.piece), stream.position);
                        stream.position += given;
                        return static_cast<std::int64_t>(given);
                    }};
};

} // namespace

SoakTasks::SoakTasks(const clap_plugin* wanted, ClapTestHost& owner, std::vector<std::string> presetFiles,
                     SoakRandom source)
    : plugin(wanted), host(owner), presets(std::move(presetFiles)), random(source) {}

void SoakTasks::runOne() {
    answerCallback();
    switch (random.below(8)) {
    case 0:
        return save();
    case 1:
        return load();
    case 2:
        return loadPreset();
    case 3:
        host.trackName = std::string(1 + random.below(40), 'T');
        return extension<clap_plugin_track_info>(CLAP_EXT_TRACK_INFO).changed(plugin);
    default:
        return ask();
    }
}

void SoakTasks::answerCallback() {
    if (host.callbacksAsked.exchange(0) > 0)
        plugin->on_main_thread(plugin);
}

void SoakTasks::save() {
    Stream stream{{}, random.chance(0.2) ? 1u : 1 + random.below(4000)};
    if (!extension<clap_plugin_state>(CLAP_EXT_STATE).save(plugin, &stream.out))
        return;
    if (states.size() == mostStates)
        states.erase(states.begin() + random.below(mostStates));
    states.push_back(stream.bytes);
}

// As it was, cut short, or with a few bytes changed.
void SoakTasks::load() {
    if (states.empty())
        return;
    Stream stream{states[random.below(static_cast<std::uint32_t>(states.size()))], 1 + random.below(4000)};
    if (random.chance(0.1))
        stream.bytes.resize(random.below(static_cast<std::uint32_t>(stream.bytes.size())));
    for (std::uint32_t changes = random.chance(0.2) ? 20 : 0; changes > 0 && !stream.bytes.empty(); --changes)
        stream.bytes[random.below(static_cast<std::uint32_t>(stream.bytes.size()))] = static_cast<char>(random.bits());
    statesLoaded += extension<clap_plugin_state>(CLAP_EXT_STATE).load(plugin, &stream.in) ? 1 : 0;
}

void SoakTasks::loadPreset() {
    const std::string path = presets.empty() || random.chance(0.1)
                                 ? "nowhere/none.tvp"
                                 : presets[random.below(static_cast<std::uint32_t>(presets.size()))];
    const auto& loader = extension<clap_plugin_preset_load>(CLAP_EXT_PRESET_LOAD);
    presetsLoaded += loader.from_location(plugin, CLAP_PRESET_DISCOVERY_LOCATION_FILE, path.c_str(), nullptr) ? 1 : 0;
    host.presetsLoaded.clear();
    host.presetErrors.clear();
}

void SoakTasks::ask() {
    const auto& params = extension<clap_plugin_params>(CLAP_EXT_PARAMS);
    const clap_id id = random.below(params.count(plugin) + 2);
    double value = 0.0;
    std::array<char, 64> text{};
    if (params.get_value(plugin, id, &value) &&
        params.value_to_text(plugin, id, value, text.data(), static_cast<std::uint32_t>(text.size())))
        params.text_to_value(plugin, id, text.data(), &value);
    extension<clap_plugin_latency>(CLAP_EXT_LATENCY).get(plugin);
    extension<clap_plugin_tail>(CLAP_EXT_TAIL).get(plugin);
}
