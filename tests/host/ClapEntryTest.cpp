#include "tests/support/ClapTestHost.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

std::string textOf(const char* text) {
    return text != nullptr ? text : "(null)";
}

TEST(ClapEntry, TellsTheProduct) {
    const ClapTestLibrary library(ZELK_PLUGIN_FILE);
    const clap_plugin_factory& factory = library.factory();
    EXPECT_EQ(library.entry().clap_version.major, 1u);
    EXPECT_EQ(library.entry().clap_version.minor, 1u);
    EXPECT_EQ(library.entry().clap_version.revision, 10u);
    EXPECT_EQ(factory.get_plugin_count(&factory), 1u);
    EXPECT_EQ(factory.get_plugin_descriptor(&factory, 1), nullptr);

    const clap_plugin_descriptor& plugin = *factory.get_plugin_descriptor(&factory, 0);
    EXPECT_EQ(textOf(plugin.id), "com.Tessivane.preset-discovery.Zelk.3");
    EXPECT_EQ(textOf(plugin.name), "Zelk 3");
    EXPECT_EQ(textOf(plugin.vendor), "Tessivane");
    EXPECT_EQ(textOf(plugin.version), "3.24");
    EXPECT_EQ(textOf(plugin.manual_url), textOf(plugin.url) + "/help/zelk 3");
    EXPECT_TRUE(textOf(plugin.support_url).ends_with("/support/"));
    EXPECT_EQ(plugin.description, nullptr);
    EXPECT_EQ(textOf(plugin.features[0]), "audio-effect");
    EXPECT_EQ(textOf(plugin.features[1]), "equalizer");
    EXPECT_EQ(plugin.features[2], nullptr);

    const auto& discovery = *static_cast<const clap_preset_discovery_factory*>(
        library.entry().get_factory(CLAP_PRESET_DISCOVERY_FACTORY_ID));
    EXPECT_EQ(discovery.count(&discovery), 1u);
    EXPECT_EQ(discovery.get_descriptor(&discovery, 1), nullptr);
    const clap_preset_discovery_provider_descriptor& provider = *discovery.get_descriptor(&discovery, 0);
    EXPECT_EQ(textOf(provider.id), textOf(plugin.id));
    EXPECT_EQ(textOf(provider.name), "Zelk 3 Preset Indexer");
    EXPECT_EQ(textOf(provider.vendor), "Tessivane");
}

TEST(ClapEntry, KnowsItsFactoriesByTheirWholeIdOnly) {
    const ClapTestLibrary library(ZELK_PLUGIN_FILE);
    for (const char* id : {"clap.plugin-factory2", "clap.plugin", "clap.preset-discovery-factory",
                           "clap.preset-discovery-factory/2", "clap.preset-discovery-factory/draft-1", ""})
        EXPECT_EQ(library.entry().get_factory(id), nullptr) << id;
    EXPECT_EQ(library.entry().get_factory(nullptr), nullptr);
}

TEST(ClapEntry, CountsItsUsersAndKeepsTheDescriptorsUntilTheLastGoes) {
    const ClapTestLibrary library(ZELK_PLUGIN_FILE);
    const clap_plugin_factory& factory = library.factory();
    const clap_plugin_descriptor* const before = factory.get_plugin_descriptor(&factory, 0);
    ASSERT_TRUE(library.entry().init("another name of the same file"));
    EXPECT_EQ(factory.get_plugin_descriptor(&factory, 0), before);
    library.entry().deinit();
    ASSERT_EQ(factory.get_plugin_descriptor(&factory, 0), before);
    EXPECT_EQ(textOf(before->name), "Zelk 3");
    library.entry().deinit();
    EXPECT_EQ(factory.get_plugin_descriptor(&factory, 0), nullptr);
    ClapTestHost host;
    EXPECT_EQ(factory.create_plugin(&factory, &host.host, "com.Tessivane.preset-discovery.Zelk.3"), nullptr);
    library.entry().deinit(); // one too many does no harm
    ASSERT_TRUE(library.entry().init(ZELK_PLUGIN_FILE));
    EXPECT_NE(factory.get_plugin_descriptor(&factory, 0), nullptr);
}

TEST(ClapEntry, MakesNoInstanceForAWrongIdOrAnIncompatibleHost) {
    const ClapTestLibrary library(ZELK_PLUGIN_FILE);
    const clap_plugin_factory& factory = library.factory();
    ClapTestHost host;
    for (const char* id : {"com.Tessivane.Zelk.3", "com.tessivane.preset-discovery.Zelk.3",
                           "com.Tessivane.preset-discovery.Zelk.3 ", "com.Tessivane.preset-discovery.Zelk", ""})
        EXPECT_EQ(factory.create_plugin(&factory, &host.host, id), nullptr) << id;
    EXPECT_EQ(factory.create_plugin(&factory, &host.host, nullptr), nullptr);
    const char* const own = factory.get_plugin_descriptor(&factory, 0)->id;
    EXPECT_EQ(factory.create_plugin(&factory, nullptr, own), nullptr);
    host.host.clap_version.major = 0;
    EXPECT_EQ(factory.create_plugin(&factory, &host.host, own), nullptr);
    host.host.clap_version = {1, 99, 0};
    const clap_plugin* const plugin = factory.create_plugin(&factory, &host.host, own);
    ASSERT_NE(plugin, nullptr);
    EXPECT_EQ(plugin->desc, factory.get_plugin_descriptor(&factory, 0));
    EXPECT_EQ(plugin->get_extension(plugin, CLAP_EXT_LATENCY), nullptr) << "no extension before init";
    plugin->destroy(plugin);
}

TEST(ClapEntry, LivesWithAHostThatOffersNothing) {
    const ClapTestLibrary library(ZELK_PLUGIN_FILE);
    for (const auto offers : {ClapTestHost::Offers::nothing, ClapTestHost::Offers::emptyTables}) {
        ClapTestHost host(offers);
        host.host.request_callback = nullptr;
        ClapTestInstance instance(library, host);
        instance.start(48000.0, 64);
        instance.extension<clap_plugin_track_info>(CLAP_EXT_TRACK_INFO)->changed(instance.plugin);
        EXPECT_EQ(instance.process(64), CLAP_PROCESS_CONTINUE);
        instance.plugin->on_main_thread(instance.plugin);
    }
}

TEST(ClapEntry, AnswersForeignExtensionsWithNull) {
    const ClapTestLibrary library(ZELK_PLUGIN_FILE);
    ClapTestHost host;
    const ClapTestInstance instance(library, host);
    for (const char* id :
         {"clap.render", "clap.voice-info", "clap.track-info/1", "clap.audio-ports-config-info/draft-0",
          "clap.state-context.draft/1", "clap.context-menu.draft/0", "clap.latenc", "clap.latency ", ""})
        EXPECT_EQ(instance.extension<void>(id), nullptr) << id;
    for (const char* id :
         {CLAP_EXT_NOTE_PORTS, CLAP_EXT_AUDIO_PORTS, CLAP_EXT_LATENCY, CLAP_EXT_TAIL, CLAP_EXT_TRACK_INFO})
        EXPECT_NE(instance.extension<void>(id), nullptr) << id;
}

} // namespace
