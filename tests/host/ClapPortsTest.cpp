#include "tests/support/ClapTestHost.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

class ClapPortsTest : public testing::Test {
protected:
    const ClapTestLibrary library{ZELK_PLUGIN_FILE};
    ClapTestHost host;
    ClapTestInstance instance{library, host};
    const clap_plugin* const plugin = instance.plugin;
    const clap_plugin_audio_ports* const ports = instance.extension<clap_plugin_audio_ports>(CLAP_EXT_AUDIO_PORTS);
    const clap_plugin_audio_ports_config* const configs =
        instance.extension<clap_plugin_audio_ports_config>(CLAP_EXT_AUDIO_PORTS_CONFIG);
};

TEST_F(ClapPortsTest, MainAndSideChainInMainOutAndOneNotePort) {
    clap_audio_port_info info{};
    ASSERT_EQ(ports->count(plugin, true), 2u);
    ASSERT_EQ(ports->count(plugin, false), 1u);
    struct Row {
        std::uint32_t index;
        bool isInput;
        clap_id id;
        const char* name;
        std::uint32_t flags;
    };
    for (const Row& row : {Row{0, true, 0, "Main In", CLAP_AUDIO_PORT_IS_MAIN}, Row{1, true, 1, "Sidechain In", 0},
                           Row{0, false, 0, "Main Out", CLAP_AUDIO_PORT_IS_MAIN}}) {
        ASSERT_TRUE(ports->get(plugin, row.index, row.isInput, &info));
        EXPECT_EQ(info.id, row.id);
        EXPECT_STREQ(info.name, row.name);
        EXPECT_EQ(info.flags, row.flags) << row.name;
        EXPECT_EQ(info.channel_count, 2u);
        EXPECT_STREQ(info.port_type, "stereo");
        EXPECT_EQ(info.in_place_pair, CLAP_INVALID_ID);
    }
    EXPECT_FALSE(ports->get(plugin, 2, true, &info));
    EXPECT_FALSE(ports->get(plugin, 1, false, &info));

    const auto* const notes = instance.extension<clap_plugin_note_ports>(CLAP_EXT_NOTE_PORTS);
    clap_note_port_info note{};
    EXPECT_EQ(notes->count(plugin, true), 1u);
    EXPECT_EQ(notes->count(plugin, false), 0u);
    ASSERT_TRUE(notes->get(plugin, 0, true, &note));
    EXPECT_EQ(note.id, 0u);
    EXPECT_EQ(note.supported_dialects, 3u);
    EXPECT_EQ(note.preferred_dialect, 2u);
    EXPECT_STREQ(note.name, "Note Port");
    EXPECT_FALSE(notes->get(plugin, 1, true, &note));
    EXPECT_FALSE(notes->get(plugin, 0, false, &note));
}

TEST_F(ClapPortsTest, EveryLayoutIsAConfigurationThatCanBeChosenAndHeard) {
    ASSERT_EQ(configs->count(plugin), 29u);
    clap_audio_ports_config config{};
    EXPECT_FALSE(configs->get(plugin, 29, &config));
    const auto* const params = instance.extension<clap_plugin_params>(CLAP_EXT_PARAMS);
    instance.events.addValue(0, 3, 6.0);
    params->flush(plugin, instance.events.list(), instance.taken.list());
    instance.events.clear();
    for (std::uint32_t index = 0; index < 29; ++index) {
        ASSERT_TRUE(configs->get(plugin, index, &config));
        EXPECT_EQ(config.id, index);
        EXPECT_EQ(config.input_port_count, 2u);
        EXPECT_EQ(config.output_port_count, 1u);
        EXPECT_TRUE(config.has_main_input && config.has_main_output);
        EXPECT_EQ(config.main_input_channel_count, config.main_output_channel_count);
        EXPECT_STREQ(config.main_input_port_type, index == 0 ? "mono" : index == 1 ? "stereo" : "surround");
        ASSERT_TRUE(configs->select(plugin, index));
        clap_audio_port_info info{};
        for (const std::uint32_t port : {0u, 1u}) {
            ASSERT_TRUE(ports->get(plugin, port, true, &info));
            EXPECT_EQ(info.channel_count, config.main_input_channel_count) << config.name;
            EXPECT_STREQ(info.port_type, config.main_input_port_type);
        }
        instance.inPlace = index % 2 == 0;
        instance.start(44100.0, 64);
        ASSERT_EQ(instance.outputs.size(), config.main_output_channel_count);
        std::vector<std::vector<float>> input(instance.inputs.size(), std::vector<float>(64));
        for (std::size_t channel = 0; channel < input.size(); ++channel)
            input[channel].assign(64, static_cast<float>(channel + 1));
        const auto output = instance.run(input, 64);
        for (std::size_t channel = 0; channel < output.size(); ++channel)
            ASSERT_EQ(output[channel], input[channel]) << config.name;
        EXPECT_FALSE(configs->select(plugin, 1)) << "not while it is active";
        instance.stop();
        double value = 0.0;
        ASSERT_TRUE(params->get_value(plugin, 3, &value));
        EXPECT_EQ(value, 6.0) << "values outlive the layout";
    }
    EXPECT_FALSE(configs->select(plugin, 29));
    EXPECT_FALSE(configs->select(plugin, 0xFFFFFFFFu));
    ASSERT_TRUE(configs->select(plugin, 28)) << "the one it has";
    EXPECT_EQ(ports->count(plugin, true), 2u);
}

TEST_F(ClapPortsTest, TheTrackNamesTheInstanceAtItsBirthWithoutADirtyProject) {
    const auto* const track = instance.extension<clap_plugin_track_info>(CLAP_EXT_TRACK_INFO);
    EXPECT_EQ(host.dirtyMarks, 0);
    track->changed(plugin);
    EXPECT_EQ(host.dirtyMarks, 0) << "the name was asked already";
    host.trackName = "Drums";
    track->changed(plugin);
    EXPECT_EQ(host.dirtyMarks, 1);
}

} // namespace
