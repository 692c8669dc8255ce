// MIDI through the built library: what a controller map on the user's disk makes of it, as heard by a host.
#include "tests/support/ClapTestStream.h"
#include "tests/support/RealtimeWatch.h"
#include "tests/support/TemporaryHome.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <limits>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

using Sound = std::vector<std::vector<float>>;

constexpr std::uint32_t frames = 48000;
const std::string mapFile = ".local/share/Tessivane/Zelk 3/MidiControllerMap.tvm";

std::string littleEndian(std::int32_t value) {
    std::string bytes;
    for (int shift = 0; shift < 32; shift += 8)
        bytes += static_cast<char>(static_cast<std::uint32_t>(value) >> shift);
    return bytes;
}

std::string mapBytes(const std::function<std::int32_t(std::int32_t controller)>& target) {
    std::string bytes = "TVCM" + littleEndian(1);
    for (std::int32_t controller = 0; controller < 128; ++controller)
        bytes += littleEndian(target(controller));
    return bytes;
}

struct Move {
    std::uint32_t frame;
    std::uint8_t controller;
    std::uint8_t raw;
};

class ClapMidiTest : public testing::Test {
protected:
    clap_param_info parameter(const ClapTestInstance& instance, const std::string& name) const {
        const auto* params = instance.extension<clap_plugin_params>(CLAP_EXT_PARAMS);
        clap_param_info info{};
        for (std::uint32_t id = 0; id < params->count(instance.plugin); ++id)
            if (params->get_info(instance.plugin, id, &info) && name == info.name)
                return info;
        ADD_FAILURE() << "no parameter " << name;
        return info;
    }

    // The noise through an instance whose first band is a bell, moved in one of three ways.
    enum class Way { midi, automation, none };
    Sound render(const std::vector<Move>& moves, Way way, std::uint32_t block, std::vector<double>& told) {
        ClapTestInstance instance(library, host);
        instance.start(48000.0, block);
        instance.events.addValue(0, parameter(instance, "Band 1 Used").id, 1.0);
        instance.process(0);
        instance.taken.values.clear();
        std::map<std::uint8_t, clap_param_info> infos;
        for (const auto& [controller, name] : names)
            infos[controller] = parameter(instance, name);

        std::mt19937 random(3);
        std::uniform_real_distribution<float> level(-0.5f, 0.5f);
        Sound output(2);
        auto move = moves.begin();
        for (std::uint32_t start = 0; start < frames; start += block) {
            const std::uint32_t count = std::min(block, frames - start);
            for (std::uint32_t i = 0; i < count; ++i)
                instance.inputs[0][i] = instance.inputs[1][i] = level(random);
            instance.events.clear();
            for (; move != moves.end() && move->frame < start + count; ++move) {
                const clap_param_info& info = infos[move->controller];
                const double value = info.min_value + move->raw / 127.0 * (info.max_value - info.min_value);
                if (way == Way::midi)
                    instance.events.addMidi(move->frame - start, 0xB4, move->controller, move->raw);
                else if (way == Way::automation)
                    instance.events.addValue(move->frame - start, info.id, value);
            }
            instance.process(count);
            for (std::size_t channel = 0; channel < 2; ++channel)
                output[channel].insert(output[channel].end(), instance.outputs[channel].begin(),
                                       instance.outputs[channel].begin() + count);
        }
        for (const clap_event_param_value& value : instance.taken.values)
            told.push_back(value.value);
        return output;
    }

    // The largest difference, in dB against the largest sample of the first.
    static double differenceDb(const Sound& a, const Sound& b) {
        double largest = 0.0;
        double difference = 1e-30;
        for (std::size_t channel = 0; channel < 2; ++channel)
            for (std::size_t i = 0; i < frames; ++i) {
                largest = std::max(largest, std::abs(static_cast<double>(a[channel][i])));
                difference = std::max(difference, std::abs(static_cast<double>(a[channel][i] - b[channel][i])));
            }
        return 20.0 * std::log10(difference / largest);
    }

    // Before the library: the first instance reads the map.
    void writeMap() {
        ClapTestLibrary scratch(ZELK_PLUGIN_FILE);
        ClapTestInstance instance(scratch, host);
        std::map<std::int32_t, std::int32_t> targets;
        for (const auto& [controller, name] : names)
            targets[controller] = static_cast<std::int32_t>(parameter(instance, name).id);
        home.write(mapFile, mapBytes([&](std::int32_t controller) {
                       const auto found = targets.find(controller);
                       return found != targets.end() ? found->second : -1;
                   }));
    }

    const TemporaryHome home;
    ClapTestHost host;
    const ClapTestLibrary library{ZELK_PLUGIN_FILE};
    const std::map<std::uint8_t, std::string> names{
        {21, "Output Level"}, {22, "Band 1 Gain"}, {23, "Band 1 Frequency"}};
};

TEST_F(ClapMidiTest, AMappedControllerSoundsLikeAutomationOnItsSample) {
    writeMap();
    std::mt19937 random(17);
    std::vector<Move> moves;
    for (std::uint32_t frame = 1; frame < frames; frame += 2 * static_cast<std::uint32_t>(1 + random() % 400))
        moves.push_back(
            {frame, static_cast<std::uint8_t>(21 + random() % 3), static_cast<std::uint8_t>(random() % 128)});
    for (const std::uint32_t block : {64u, 333u, 4096u}) {
        std::vector<double> told;
        std::vector<double> echoed;
        const Sound byMidi = render(moves, Way::midi, block, told);
        const Sound byHost = render(moves, Way::automation, block, echoed);
        EXPECT_LT(differenceDb(byHost, byMidi), -90.0) << "block " << block;
        EXPECT_GT(differenceDb(byHost, render({}, Way::none, block, echoed)), -10.0) << "the moves are not heard";
        EXPECT_GT(told.size(), moves.size() * 9 / 10) << "the host is not told";
        EXPECT_TRUE(echoed.empty()) << "the host's own moves come back";
        // One sample late is heard.
        std::vector<Move> late = moves;
        for (Move& move : late)
            ++move.frame;
        EXPECT_GT(differenceDb(byHost, render(late, Way::midi, block, told)), -60.0) << "block " << block;
    }
}

TEST_F(ClapMidiTest, TheMapIsReadByTheFirstInstanceAndABrokenOneIsEmptyAndStays) {
    writeMap();
    const std::string good = home.read(mapFile);
    for (const std::string& bytes : {good, good.substr(0, 300), "Broken" + good, std::string()}) {
        home.write(mapFile, bytes);
        const bool works = bytes == good;
        {
            ClapTestInstance instance(library, host);
            ClapTestInstance second(library, host);
            for (ClapTestInstance* const moved : {&instance, &second}) {
                const clap_param_info level = parameter(*moved, "Output Level");
                moved->start(44100.0, 64);
                moved->events.addMidi(5, 0xB0, 21, 127);
                moved->process(64);
                EXPECT_EQ(valueOf(*moved, level.id), works ? level.max_value : level.default_value);
            }
        }
        EXPECT_EQ(home.read(mapFile), bytes) << "nobody changed the map, so nobody writes it";
    }
}

TEST_F(ClapMidiTest, WithReceiveMidiOffNothingMoves) {
    writeMap();
    ClapTestInstance instance(library, host);
    instance.start(44100.0, 64);
    const clap_param_info level = parameter(instance, "Output Level");
    const clap_id receive = parameter(instance, "Receive Midi").id;
    instance.events.addValue(0, receive, 1.0);
    instance.process(64);
    instance.events.clear();
    instance.events.addMidi(0, 0xB0, 21, 0);
    instance.process(64);
    EXPECT_EQ(valueOf(instance, level.id), level.default_value);
    instance.events.clear();
    instance.events.addValue(0, receive, 0.0);
    instance.process(64);
    instance.events.clear();
    instance.events.addMidi(63, 0xB0, 21, 0);
    instance.process(64);
    EXPECT_EQ(valueOf(instance, level.id), level.min_value);
}

TEST_F(ClapMidiTest, AMillionRandomMessagesMoveParametersAndDoNoHarm) {
    const char* const given = std::getenv("SEED");
    const unsigned seed = given != nullptr ? static_cast<unsigned>(std::atoi(given)) : std::random_device{}();
    SCOPED_TRACE("SEED=" + std::to_string(seed));
    std::mt19937 random(seed);
    // Every kind of target but the one that shuts MIDI out, which no MIDI can open again.
    const auto shutter =
        static_cast<std::int32_t>(parameter(*std::make_unique<ClapTestInstance>(library, host), "Receive Midi").id);
    home.write(mapFile, mapBytes([&](std::int32_t) {
                   const auto bits = static_cast<std::int32_t>(random());
                   const std::int32_t target = bits % 8 == 0 ? bits : (bits & 0xFFFF) % 400 - 20; // also far out
                   return target == shutter ? -1 : target;
               }));
    ClapTestInstance instance(library, host);
    instance.start(48000.0, 64);
    std::size_t moves = 0;
    for (int sent = 0; sent < 1000000;) {
        instance.events.clear();
        for (std::uint32_t i = 0; i < 1000; ++i, ++sent) {
            const auto bits = random();
            if (bits >> 28 == 0) { // now and then a note as the host's own event, with what only a broken host says
                constexpr double velocities[] = {0.5, -1.0, 1e300, std::numeric_limits<double>::quiet_NaN()};
                instance.events.addNote(i / 125 * 9, (bits & 1) != 0, static_cast<int>(bits >> 1 & 31) - 1,
                                        static_cast<int>(bits >> 6 & 255) - 1, velocities[bits >> 14 & 3]);
                continue;
            }
            instance.events.addMidi(i / 125 * 9, static_cast<std::uint8_t>(bits), static_cast<std::uint8_t>(bits >> 8),
                                    static_cast<std::uint8_t>(bits >> 16));
        }
        for (auto& input : instance.inputs)
            std::generate(input.begin(), input.end(),
                          [&] { return static_cast<float>(random() % 1000) * 1e-3f - 0.5f; });
        instance.taken.values.clear();
#ifdef ZELK_REALTIME_WATCH
        const int scopes = RealtimeWatch::scopesEntered();
#endif
        ASSERT_EQ(instance.process(64), CLAP_PROCESS_CONTINUE); // memory or a lock in it would abort a watched build
#ifdef ZELK_REALTIME_WATCH
        ASSERT_GT(RealtimeWatch::scopesEntered(), scopes);
#endif
        moves += instance.taken.values.size();
        for (const auto& output : instance.outputs)
            ASSERT_TRUE(std::all_of(output.begin(), output.end(), [](float sample) { return std::isfinite(sample); }));
    }
    EXPECT_GT(moves, 10000u);
    const auto* params = instance.extension<clap_plugin_params>(CLAP_EXT_PARAMS);
    for (std::uint32_t id = 0; id < params->count(instance.plugin); ++id) {
        clap_param_info info{};
        ASSERT_TRUE(params->get_info(instance.plugin, id, &info));
        const double value = valueOf(instance, id);
        EXPECT_TRUE(value >= info.min_value && value <= info.max_value) << info.name << " is " << value;
    }
}

} // namespace
