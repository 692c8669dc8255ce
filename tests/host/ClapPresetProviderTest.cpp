#include "framework/SettingsKeys.h"
#include "tests/support/ClapTestHost.h"
#include "tests/support/TemporaryHome.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// Everything that a provider says, one line a call.
struct Told {
    std::vector<std::string> lines;
    bool takesLocation = true;
    bool takesPreset = true;

    static Told& of(const void* data) { return *static_cast<Told*>(const_cast<void*>(data)); }
};

clap_preset_discovery_indexer indexerOf(Told& told) {
    clap_preset_discovery_indexer indexer{};
    indexer.clap_version = CLAP_VERSION;
    indexer.indexer_data = &told;
    indexer.declare_filetype = [](const auto* self, const auto* type) noexcept {
        Told::of(self->indexer_data)
            .lines.push_back(std::string("type ") + type->name + "|" + type->description + "|" + type->file_extension);
        return false; // nobody looks at it
    };
    indexer.declare_location = [](const auto* self, const auto* place) noexcept {
        Told& into = Told::of(self->indexer_data);
        into.lines.push_back("location " + std::to_string(place->flags) + "|" + place->name + "|" +
                             std::to_string(place->kind) + "|" + place->location);
        return into.takesLocation;
    };
    return indexer;
}

clap_preset_discovery_metadata_receiver receiverOf(Told& told) {
    using Self = const clap_preset_discovery_metadata_receiver*;
    clap_preset_discovery_metadata_receiver receiver{};
    receiver.receiver_data = &told;
    receiver.on_error = [](Self self, std::int32_t, const char*) noexcept {
        Told::of(self->receiver_data).lines.emplace_back("error");
    };
    receiver.begin_preset = [](Self self, const char* name, const char* key) noexcept {
        Told::of(self->receiver_data).lines.push_back(std::string("preset ") + name + "|" + key);
        return Told::of(self->receiver_data).takesPreset;
    };
    receiver.add_creator = [](Self self, const char* text) noexcept {
        Told::of(self->receiver_data).lines.push_back(std::string("by ") + text);
    };
    receiver.set_description = [](Self self, const char* text) noexcept {
        Told::of(self->receiver_data).lines.push_back(std::string("about ") + text);
    };
    receiver.set_flags = [](Self self, std::uint32_t flags) noexcept {
        Told::of(self->receiver_data).lines.push_back("flags " + std::to_string(flags));
    };
    receiver.add_plugin_id = [](Self self, const clap_plugin_id* id) noexcept {
        Told::of(self->receiver_data).lines.push_back(std::string("for ") + id->abi + "|" + id->id);
    };
    receiver.add_feature = [](Self self, const char* text) noexcept {
        Told::of(self->receiver_data).lines.push_back(std::string("is ") + text);
    };
    return receiver;
}

class ClapPresetProviderTest : public testing::Test {
protected:
    using Lines = std::vector<std::string>;
    static constexpr const char* id = "com.Tessivane.preset-discovery.Zelk.3";

    const clap_preset_discovery_provider* create(const char* wanted = id) {
        const auto* factory = static_cast<const clap_preset_discovery_factory*>(
            library.entry().get_factory(CLAP_PRESET_DISCOVERY_FACTORY_ID));
        return factory->create(factory, &indexer, wanted);
    }
    Lines describe(const clap_preset_discovery_provider* provider, const std::string& path, bool expected,
                   std::uint32_t kind = CLAP_PRESET_DISCOVERY_LOCATION_FILE) {
        told.lines.clear();
        EXPECT_EQ(provider->get_metadata(provider, kind, path.c_str(), &receiver), expected) << path;
        return told.lines;
    }

    const TemporaryHome home;
    const ClapTestLibrary library{ZELK_PLUGIN_FILE};
    Told told;
    const clap_preset_discovery_indexer indexer = indexerOf(told);
    const clap_preset_discovery_metadata_receiver receiver = receiverOf(told);
};

TEST_F(ClapPresetProviderTest, TellsWherePresetsLieAndWhatIsInThem) {
    const std::string root = home.path("Documents/Tessivane/Presets/Zelk 3/");
    const std::string inside = "Documents/Tessivane/Presets/Zelk 3/";
    std::string binary("ZK3p\4\0\0\0\1\0\0\0\0\0\0\0", 16);
    home.write(inside + "Bass/Sub.tvp", binary);
    home.write(inside + "Air.tvp", "[Preset]\nSignature=ZK3p\nVersion=4\nAuthor=Eve\nDescription=\"Some air\"\n"
                                   "Tags=air, voice,\n[Parameters]\n");
    home.write(inside + "Foreign.tvp", "ZQ1p" + binary.substr(4));
    home.write(inside + "Favorites.txt", "# mine\n\nBass/Sub.tvp\r\nNone.tvp\n");
    const clap_preset_discovery_provider* const provider = create();
    ASSERT_NE(provider, nullptr);
    EXPECT_TRUE(told.lines.empty()) << "creation calls nothing";
    EXPECT_EQ(provider->get_extension(provider, "any"), nullptr);
    ASSERT_TRUE(provider->init(provider));
    EXPECT_EQ(told.lines, (Lines{"location 3|Zelk Preset Folder|0|" + root,
                                 "type Tessivane Preset|Preset for a Tessivane plugin|tvp"}));
    const std::string forUs = std::string("for clap|") + id;
    EXPECT_EQ(describe(provider, home.path(inside + "Bass/Sub.tvp"), true),
              (Lines{"preset Sub|" + home.path(inside + "Bass/Sub.tvp"), "flags 11", forUs}));
    EXPECT_EQ(describe(provider, root + "Air.tvp", true),
              (Lines{"preset Air|" + root + "Air.tvp", "by Eve", "about Some air", forUs, "is air", "is voice"}));
    for (const char* refused : {"Bass", "none.tvp", "Foreign.tvp", "Favorites.txt"})
        EXPECT_EQ(describe(provider, root + refused, false), Lines{});
    EXPECT_EQ(describe(provider, root + "Air.tvp", false, CLAP_PRESET_DISCOVERY_LOCATION_PLUGIN), Lines{});
    told.takesPreset = false;
    EXPECT_EQ(describe(provider, root + "Air.tvp", false), Lines{"preset Air|" + root + "Air.tvp"});
    provider->destroy(provider);
}

TEST_F(ClapPresetProviderTest, FollowsTheUsersFolderAndAHostThatRefusesIt) {
    EXPECT_EQ(create("other"), nullptr);
    ASSERT_TRUE(writeSettings(productSettingsKey(VersionInfo("Zelk")), {{"PresetFolder", std::string("/elsewhere")}}));
    told.takesLocation = false;
    const clap_preset_discovery_provider* const provider = create();
    EXPECT_FALSE(provider->init(provider));
    EXPECT_EQ(told.lines, Lines{"location 3|Zelk Preset Folder|0|/elsewhere"});
    provider->destroy(provider);
}

} // namespace
