#include "platform/Resources.h"
#include "resources/ZelkResources.h"
#include "state/PresetManager.h"
#include "state/ResourceArchive.h"
#include "tests/state/StateTestObjects.h"
#include "tools/resources/PresetLayout.h"
#include "tools/resources/PresetSource.h"

#include <filesystem>
#include <zlib.h>

namespace {

std::string record(std::string_view name, std::int64_t storedSize, std::int64_t fullSize) {
    Bytes bytes;
    bytes.raw(std::string(1, static_cast<char>(name.size()))).raw(name);
    bytes.text.resize(68, '\x55'); // what is behind a name is not read
    return bytes.i32(storedSize).i32(fullSize).text;
}

std::string file(std::string_view name, std::string_view content, int sizeError = 0) {
    std::string stored(compressBound(content.size()), '\0');
    uLongf size = stored.size();
    compress(reinterpret_cast<Bytef*>(stored.data()), &size, reinterpret_cast<const Bytef*>(content.data()),
             content.size());
    stored.resize(size);
    return record(name, std::ssize(stored), std::ssize(content) + sizeError) + stored;
}

std::string folder(std::string_view name, const std::string& content) {
    const std::string level = content + record("", 0, 0);
    return record(name, std::ssize(level), -1) + level;
}

std::string archive(const std::string& content) {
    Bytes bytes;
    bytes.raw("TV/ISB/3").i32(53 + std::ssize(content) - 28);
    bytes.text.resize(53, '\x77');
    return bytes.raw(content).text;
}

class FactoryPresets : public StateTest {
protected:
    bool unpack(const std::string& bytes, std::string_view name = "FactoryPresets",
                FactoryFiles how = FactoryFiles::onlyMissing) {
        return ResourceArchive(bytes).unpack(name, home.path("target"), how);
    }
};

TEST_F(FactoryPresets, UnpackFromAHandMadeArchiveWhateverTheCaseOfTheFolder) {
    const std::string bytes = archive(
        folder("ApplicationData", "") + file("loose", "x") +
        folder("Factorypresets", file("a.tvp", "first") + folder("Sub", file("b.tvp", std::string(5000, 'b')))));
    EXPECT_TRUE(unpack(bytes));
    EXPECT_EQ(home.read("target/a.tvp"), "first");
    EXPECT_EQ(home.read("target/Sub/b.tvp"), std::string(5000, 'b'));
    home.write("target/a.tvp", "mine");
    EXPECT_TRUE(unpack(bytes));
    EXPECT_EQ(home.read("target/a.tvp"), "mine");
    EXPECT_TRUE(unpack(bytes, "FactoryPresets", FactoryFiles::keepEdited));
    EXPECT_EQ(home.read("target/a.tvp") + home.read("target/a (old).tvp"), "firstmine");
    home.write("target/a.tvp", "again");
    EXPECT_TRUE(unpack(bytes, "FactoryPresets", FactoryFiles::keepEdited));
    EXPECT_EQ(home.read("target/a (old).tvp") + home.read("target/a (old 2).tvp"), "mineagain");
    home.write("target/a.tvp", "once more");
    EXPECT_TRUE(unpack(bytes, "FactoryPresets", FactoryFiles::overwrite));
    EXPECT_EQ(home.read("target/a.tvp"), "first");
    EXPECT_EQ(std::distance(std::filesystem::recursive_directory_iterator(home.path("target")), {}), 5);
    EXPECT_FALSE(unpack(bytes, "Other"));
}

TEST_F(FactoryPresets, DamageAndNamesThatLeadElsewhereAreRefused) {
    const std::string good = archive(folder("FactoryPresets", file("a", "x")));
    std::vector<std::string> bad{"TV/ISB/2" + good.substr(8),
                                 archive(folder("FactoryPresets", file("a", "xyz", 1))),
                                 archive(folder("FactoryPresets", file("a", "xyz", -1))),
                                 archive(folder("FactoryPresets", record("a", 3, 3) + "xyz")),
                                 archive(folder("FactoryPresets", record("a", INT32_MAX, 1))),
                                 archive(folder("FactoryPresets", record("a", -5, 1))),
                                 archive(folder("FactoryPresets", record("a", 1, INT32_MAX) + "x"))};
    for (const char* name : {"../a", "..", ".a", "b/a", "b\\a", "a..b"}) {
        bad.push_back(archive(folder("FactoryPresets", file(name, "x"))));
        bad.push_back(archive(folder("FactoryPresets", folder(name, file("a", "x")))));
    }
    // An end in the middle of a name or of what follows it; a missing end record alone does no harm.
    for (std::size_t size = 0; size < good.size() - 76; size += 7)
        bad.push_back(good.substr(0, size));
    for (const std::string& bytes : bad)
        EXPECT_FALSE(unpack(bytes)) << bytes.size();
    EXPECT_FALSE(std::filesystem::exists(home.path("a")));
    std::string nested = file("x", "x");
    for (int i = 0; i < 100; ++i)
        nested = folder("d", nested);
    EXPECT_FALSE(unpack(archive(folder("FactoryPresets", nested))));
}

TEST_F(FactoryPresets, ThePackedOnesAreVersionFourWith334ValuesThatTheProductCanHold) {
    ZelkPlugin fresh; // unpacks them
    const std::string root = home.path("Documents/Tessivane/Presets/Zelk 3/");
    PresetManager manager(root, ".tvp");
    ASSERT_GE(manager.allPresets().size(), 3u);
    EXPECT_EQ(fresh.currentPreset().name(), "Default Setting");
    std::vector<std::vector<float>> all;
    for (const Preset* preset : manager.allPresets()) {
        ASSERT_EQ(std::filesystem::file_size(preset->path), 1348u) << preset->path;
        ZelkPlugin plugin;
        ASSERT_EQ(plugin.loadPresetFile(preset->path), "") << preset->path;
        ASSERT_TRUE(plugin.presetParameters().save(home.path("again"), 4));
        std::string packed;
        ASSERT_TRUE(readFile(preset->path, 2000, packed));
        EXPECT_EQ(home.read("again").substr(12, 334 * 4), packed.substr(12)) << preset->path << " was clamped";
        for (const std::vector<float>& other : all)
            EXPECT_NE(other, valuesOf(plugin)) << preset->path << " is like another";
        all.push_back(valuesOf(plugin));
    }
    ZelkPlugin plugin;
    ASSERT_EQ(plugin.loadPresetFile(manager.findByName("Default Setting", true)->path), "");
    EXPECT_EQ(valuesOf(plugin), defaultsOf(plugin));
    ASSERT_EQ(plugin.loadPresetFile(manager.findByName("De-Esser", true)->path), "");
    const EQParameterSet& band = plugin.bands.set(1);
    EXPECT_EQ(band.frequency.text(band.frequency.value()), "6800.0 Hz");
    EXPECT_NEAR(band.threshold.unitFromValue(band.threshold.value()), -34.0, 1e-4);
    EXPECT_NEAR(band.q.unitFromValue(band.q.value()), 2.2, 1e-5);
    EXPECT_EQ(band.dynamicRange.value(), -8.0f);
}

// The packer knows none of the product's classes, only the format; here the two meet.
TEST_F(FactoryPresets, ThePackersNamesRangesAndLawsAreThoseOfTheProduct) {
    const ZelkPlugin plugin;
    const auto expectNames = [](const AbstractPluginParameter& parameter, std::string_view names) {
        for (float value = parameter.minimum(); value <= parameter.maximum(); value += 1.0f)
            EXPECT_EQ(PresetLayout::indexOfName(names, parameter.text(value)), static_cast<int>(value))
                << parameter.longName() << parameter.text(value);
    };
    const EQParameterSet& band = plugin.bands.set(0);
    expectNames(band.shape, PresetLayout::shapeNames);
    expectNames(band.slope, PresetLayout::slopeNames);
    expectNames(band.stereoPlacement, PresetLayout::placementNames);
    expectNames(band.speakers, PresetLayout::speakersNames);
    std::int32_t id = PresetLayout::firstGlobal;
    for (const PresetLayout::Global& global : PresetLayout::globals) {
        const AbstractPluginParameter& parameter = plugin.parameter(id++);
        EXPECT_EQ(parameter.longName(), global.name);
        EXPECT_EQ(parameter.minimum(), global.lowest) << global.name;
        EXPECT_EQ(parameter.maximum(), global.highest) << global.name;
        if (!global.valueNames.empty())
            expectNames(parameter, global.valueNames);
    }
    const std::vector<float> values =
        readPresetSource("about: x\nband: 31.5 Hz, threshold -60 dB, Q 0.3\nOutput Level: -6 dB\nGain Scale: 80 %\n")
            .values;
    EXPECT_NEAR(band.frequency.unitFromValue(values[2]), 31.5, 1e-4);
    EXPECT_NEAR(band.threshold.unitFromValue(values[6]), -60.0, 1e-4);
    EXPECT_NEAR(band.q.unitFromValue(values[7]), 0.3, 1e-6);
    EXPECT_NEAR(plugin.outputLevel.unitFromValue(values[315]), -6.0, 1e-4);
    EXPECT_NEAR(plugin.gainScale.unitFromValue(values[314]), 80.0, 1e-4);
    for (const char* wrong : {"band: Bell", "about: x\nband: Bel", "about: x\nband: 40 kHz", "about: x\nband: Q",
                              "about: x\nOutput: 1", "about: x\nBypass: 2", "about: x\nOutput Level: 1", "about:"})
        EXPECT_THROW(readPresetSource(wrong), PresetSourceError) << wrong;
}

} // namespace
