#include "framework/zelk/LegacyPresetLoader.h"
#include "state/PresetFile.h"
#include "tests/state/StateTestObjects.h"

#include <filesystem>
#include <numeric>

namespace {

constexpr std::size_t firstAnalyzer = 321;
constexpr std::size_t lastAnalyzer = 330;

class PresetFormats : public StateTest {
protected:
    std::string load(const std::string& bytes) { return plugin.loadPresetFile(write("p.tvp", bytes)); }

    // What a load leaves where file and older values differ: the interface's own parameters stay.
    std::vector<float> keepingInterface(std::vector<float> values, const std::vector<float>& before) {
        for (std::size_t i = firstAnalyzer; i <= lastAnalyzer; ++i)
            values[i] = before[i];
        return values;
    }

    // A value that the parameter can hold and that tells where it came from.
    float mark(std::size_t id) {
        const AbstractPluginParameter& parameter = plugin.parameter(static_cast<std::int32_t>(id));
        return parameter.kind() == AbstractPluginParameter::Kind::stepped
                   ? parameter.maximum()
                   : parameter.minimum() +
                         (parameter.maximum() - parameter.minimum()) * (static_cast<float>(id % 97) + 1.0f) / 128.0f;
    }
    std::vector<float> marks(std::size_t count) {
        std::vector<float> values;
        for (std::size_t id = 0; id < count; ++id)
            values.push_back(mark(id));
        return values;
    }

    ZelkPlugin plugin;
    const std::vector<float> standard = defaultsOf(plugin);
};

TEST_F(PresetFormats, VersionFourTakesWhatItHoldsAndDefaultsBehindIt) {
    for (const std::size_t count : {std::size_t{334}, std::size_t{358}, std::size_t{400}}) {
        moveAll(plugin);
        const std::vector<float> before = valuesOf(plugin);
        std::vector<float> stored = marks(std::min(count, std::size_t{358}));
        std::vector<float> wanted = stored;
        wanted.insert(wanted.end(), standard.begin() + std::ssize(stored), standard.end());
        stored.resize(count, 0.25f);
        EXPECT_EQ(load(binaryPreset("ZK3p", 4, stored).raw("anything behind").text), "");
        EXPECT_EQ(valuesOf(plugin), keepingInterface(wanted, before)) << count;
        EXPECT_FALSE(plugin.currentPreset().modified());
        EXPECT_EQ(plugin.currentPreset().name(), "p");
    }
}

TEST_F(PresetFormats, OlderVersionsGoThroughTheirMaps) {
    for (const int version : {3, 2, 1}) {
        moveAll(plugin);
        const std::vector<float> before = valuesOf(plugin);
        // The old list, written down from the product's history; -1: a parameter of today that it lacks.
        std::vector<float> stored;
        std::vector<float> wanted = standard;
        for (std::size_t id = 0; id < 334; ++id) {
            const std::size_t offset = id < 312 ? id % 13 : 13;
            const bool lacks = id == 329 || (id == 317 && version < 3) || (version == 1 && offset == 5);
            if (lacks)
                continue;
            stored.push_back(mark(id));
            if (version == 1 && offset == 12) {
                stored.back() = id == 311 ? 1.0f : 0.0f; // the solo of the last band is that of the first today
                wanted[12] = 1.0f;
            } else {
                wanted[id] = mark(id);
            }
        }
        ASSERT_EQ(stored.size(), version == 3 ? 333u : version == 2 ? 332u : 308u);
        if (version == 1)
            std::copy(before.begin() + 335, before.end(), wanted.begin() + 335); // its map ends before these
        EXPECT_EQ(load(binaryPreset("ZK3p", version, stored).text), "");
        EXPECT_EQ(valuesOf(plugin), keepingInterface(wanted, before)) << "version " << version;
    }
}

TEST_F(PresetFormats, WhatIsNoPresetOfOursChangesNothingAndSaysWhy) {
    const std::string foreign = "Unknown preset signature (likely intended for another Tessivane plug-in): ";
    const std::vector<float> values(358, 0.5f);
    const std::pair<std::string, std::string> wrong[] = {
        {binaryPreset("ZQ1p", 1, values).text, foreign + "ZQ1p"},
        {binaryPreset("ZK3p", 5, values).text, "Unsupported preset version: 5"},
        {binaryPreset("ZK3p", 0, values).text, "Unsupported preset version: 0"},
        {binaryPreset("ZK3p", -4, values).text, "Unsupported preset version: -4"},
        {binaryPreset("ZK2p", 3, values).text, foreign + "ZK2p"},
        {"", foreign},
        {"ZK3p", foreign},
        {Bytes().raw("ZK3p").i32(4).text, "Invalid file format."},
        {Bytes().raw("ZK3p").i32(4).i32(-1).f32s(values).text, "Invalid file format."},
        {Bytes().raw("ZK3p").i32(4).i32(INT32_MAX).f32s(values).text, "Invalid file format."},
        {"[Other]\nSignature=ZK3p\n", "Invalid preset header."},
        {"[Preset]\nSignature=ZQ1p\nVersion=4\n", foreign + "ZQ1p"},
        {"[Preset]\nSignature=ZK3p\nVersion=3\n[Parameters]\nBypass=1\n", "Unsupported preset version: 3"},
        {"[Preset]\nSignature=ZK3p\nVersion=4x\n[Parameters]\nBypass=1\n", "Unsupported preset version: 0"},
    };
    moveAll(plugin);
    plugin.customValues = {{"kept", "yes"}};
    plugin.currentPreset().setName("before");
    const std::vector<float> before = valuesOf(plugin);
    for (const auto& [bytes, message] : wrong) {
        EXPECT_EQ(load(bytes), message);
        EXPECT_EQ(valuesOf(plugin), before) << message;
    }
    EXPECT_EQ(plugin.loadPresetFile(home.path("none.tvp")), foreign);
    EXPECT_EQ(plugin.loadPresetFile("/dev/zero"), foreign);
    EXPECT_EQ(plugin.customValues.count("kept"), 1u);
    EXPECT_EQ(plugin.currentPreset().name(), "before");
}

TEST_F(PresetFormats, ATruncatedFileSetsZeroForWhatItLacksAndStaysUnnamed) {
    moveAll(plugin);
    plugin.currentPreset().setName("before");
    EXPECT_EQ(load(Bytes().raw("ZK3p").i32(4).i32(358).f32s({1.0f, 0.0f, 8.0f}).raw("xy").text),
              "Invalid file format.");
    EXPECT_EQ(plugin.parameter(2).value(), 8.0f);
    EXPECT_EQ(plugin.parameter(3).value(), 0.0f); // gain
    EXPECT_EQ(plugin.parameter(15).value(), plugin.parameter(15).minimum());
    EXPECT_EQ(plugin.currentPreset().name(), "before");
}

TEST_F(PresetFormats, ValuesThatAreNoNumbersBecomeDefaults) {
    std::vector<float> stored = standard;
    stored[3] = std::numeric_limits<float>::quiet_NaN();
    stored[316] = std::numeric_limits<float>::infinity();
    moveAll(plugin);
    EXPECT_EQ(load(binaryPreset("ZK3p", 4, stored).text), "");
    EXPECT_EQ(plugin.parameter(3).value(), 0.0f);
    EXPECT_EQ(plugin.parameter(316).value(), 0.0f);
}

TEST_F(PresetFormats, TextSetsWhatItNamesResetsTheRestAndKeepsItsMetadata) {
    moveAll(plugin);
    const std::vector<float> before = valuesOf(plugin);
    std::vector<float> wanted = standard;
    wanted[13 + 3] = -2.5f;
    wanted[312] = 2.0f;
    EXPECT_EQ(load("[Preset]\r\nSignature=ZK3p\r\nVersion=4\r\nAuthor=\"Eve O\"\r\nTags=air,voice\r\nNew=1\r\n\r\n"
                   "[Unknown]\r\na=b\r\n[Parameters]\r\nBand 2 Gain = -2.5\r\nProcessing Mode=2\r\nBypass=1x\r\n"
                   "[Settings]\r\nkey=va\\nlue\r\n"),
              "");
    EXPECT_EQ(valuesOf(plugin), keepingInterface(wanted, before));
    EXPECT_EQ(plugin.customValues, (CustomValues{{"AUTHOR", "Eve O"}, {"TAGS", "air,voice"}, {"key", "va\nlue"}}));

    plugin.currentPreset().setName("before");
    EXPECT_EQ(load("[Preset]\nSignature=ZK3p\nVersion=4\n[Parameters]\nNo Such=1\nBand 1 Gain=3\nNor That=2\n"),
              "Unknown parameter: No Such");
    EXPECT_EQ(plugin.parameter(3).value(), 3.0f);
    EXPECT_EQ(plugin.currentPreset().name(), "before");
    EXPECT_TRUE(plugin.customValues.empty());
    EXPECT_EQ(load("[Preset]\nSignature=ZK3p\nVersion=4\n[Parameters]\nBand 1 Gain=4\nBand 2 Gain\n"),
              "Invalid file format.");
    EXPECT_EQ(plugin.parameter(3).value(), 4.0f);
}

TEST_F(PresetFormats, TheSecondLayoutsBandStatesAndSoloBecomeSwitches) {
    moveAll(plugin);
    const std::vector<float> before = valuesOf(plugin);
    std::vector<float> stored;
    for (int band = 0; band < 24; ++band) // state, frequency, gain, Q, shape, slope, placement
        stored.insert(stored.end(), {static_cast<float>(band % 3), 5.0f, static_cast<float>(band), 0.25f, 1.0f, 3.0f,
                                     static_cast<float>(band % 2)});
    stored.insert(stored.end(), {2, 3, 1, 0.5f, -0.25f, 0.5f, 1, 1, 1}); // pan mode: mid/side
    stored.insert(stored.end(), 9, 7.0f);
    stored.insert(stored.end(), {1, 1, 4, -6});
    ASSERT_EQ(stored.size(), 190u);
    EXPECT_EQ(load(binaryPreset("ZK2p", 2, stored).text), "");
    for (int i = 0; i < 24; ++i) {
        const EQParameterSet& band = plugin.bands.set(i);
        EXPECT_EQ(band.used.get(), i % 3 != 2);
        EXPECT_EQ(band.enabled.get(), i % 3 == 1);
        EXPECT_EQ(band.solo.get(), i == 4);
        EXPECT_EQ(band.gain.value(), static_cast<float>(i));
        EXPECT_EQ(band.q.value(), 0.25f);
        EXPECT_EQ(band.slope.get(), FilterSlope::db24);
        EXPECT_EQ(band.stereoPlacement.get(), i % 2 == 0 ? StereoPlacement::mid : StereoPlacement::side);
        EXPECT_EQ(band.threshold.value(), 1.0f);
        EXPECT_EQ(band.dynamicRange.value(), 0.0f);
        EXPECT_FALSE(plugin.extensions.set(i).externalSideChain.get());
        EXPECT_EQ(band.dynamicsEnabled.value(), before[static_cast<std::size_t>(i * 13 + 5)]);
    }
    EXPECT_EQ(plugin.processingMode.get(), ProcessingMode::linearPhase);
    EXPECT_EQ(plugin.outputLevel.value(), -0.25f);
    EXPECT_EQ(plugin.soloGain.value(), -6.0f);
    EXPECT_EQ(plugin.displayRange.index(), 1);
}

TEST_F(PresetFormats, TheFirstLayoutConvertsSlopesAndQ) {
    const auto stored = [this](float q, float shape, float slope, float resolution, float range) {
        const float storedQ = plugin.bands.set(0).q.valueFromUnit(static_cast<double>(q));
        std::vector<float> values{2};
        for (int band = 0; band < 24; ++band) // frequency, gain, Q, shape, slope, placement, enabled
            values.insert(values.end(), {6.0f, 1.0f, storedQ, shape, slope, 0.0f, 1.0f});
        values.insert(values.end(), {0.1f, 0.2f, range, resolution, 0, 0, 0, 9, 9, 9});
        EXPECT_EQ(values.size(), 179u);
        return binaryPreset("ZKPr", 2, values).text;
    };
    moveAll(plugin);
    ASSERT_EQ(load(stored(0.8f, 2, 2, 0, 3)), ""); // low cut, 24 dB/oct
    const EQParameterSet& band = plugin.bands.set(1);
    EXPECT_EQ(band.slope.get(), FilterSlope::db24);
    EXPECT_NEAR(band.q.unitFromValue(band.q.value()), 0.581, 1e-5);
    EXPECT_TRUE(band.used.get() && !plugin.bands.set(2).used.get());
    EXPECT_EQ(band.stereoPlacement.get(), StereoPlacement::left);
    EXPECT_FALSE(band.solo.get());
    EXPECT_EQ(plugin.displayRange.index(), 0);
    EXPECT_EQ(plugin.processingMode.get(), ProcessingMode::zeroLatency);
    EXPECT_EQ(plugin.processingResolution.index(), 1);
    ASSERT_EQ(load(stored(0.8f, 4, 3, 4, 0)), ""); // high cut, 48 dB/oct
    EXPECT_EQ(band.slope.get(), FilterSlope::db48);
    EXPECT_EQ(plugin.displayRange.index(), 1);
    EXPECT_EQ(plugin.processingMode.get(), ProcessingMode::linearPhase);
    EXPECT_EQ(plugin.processingResolution.index(), 3);
    ASSERT_EQ(load(stored(0.8f, 0, 3, 0, 0)), ""); // bell
    EXPECT_EQ(band.slope.get(), FilterSlope::db12);
    EXPECT_NEAR(band.q.unitFromValue(band.q.value()), 0.8, 1e-5);
    for (const auto& [q, converted] : {std::pair{0.01, 0.025}, {0.025, 0.025}, {1.25, 1.175}, {1.4, 1.4}, {41.0, 40.0}})
        EXPECT_NEAR(LegacyPresetLoader::convertedQ(q), converted, 1e-12) << q;
}

TEST_F(PresetFormats, ASavedPresetHoldsEveryValueByteForByteAndAFullDiskKeepsTheOldOne) {
    moveAll(plugin);
    const std::string path = home.path("made/Mine.tvp");
    ASSERT_TRUE(plugin.savePresetFile(path));
    const std::string wanted = binaryPreset("ZK3p", 4, valuesOf(plugin)).text;
    EXPECT_EQ(home.read("made/Mine.tvp"), wanted);
    EXPECT_EQ(plugin.currentPreset().name(), "Mine");
    EXPECT_EQ(plugin.currentPreset().path(), path);
    EXPECT_FALSE(plugin.currentPreset().modified());

    plugin.bands.set(0).gain.setValue(-1.0f, 0);
    {
        const SavingFails fullDisk(path, 1000);
        EXPECT_FALSE(plugin.savePresetFile(path));
        EXPECT_EQ(home.read("made/Mine.tvp"), wanted);
        EXPECT_TRUE(plugin.currentPreset().modified());
    }
    for (const char* name : {"made/...tvp", "made/..tvp", ".tvp"})
        EXPECT_FALSE(plugin.savePresetFile(home.path(name))) << name;
}

TEST_F(PresetFormats, TextFormSavesAndPatchesWhatItReads) {
    plugin.info.capabilities |= GenericPluginInfo::textPresets;
    plugin.customValues = {{"AUTHOR", "Eve"}, {"DESCRIPTION", ""}, {"x", "a b"}};
    moveAll(plugin);
    const std::vector<float> saved = valuesOf(plugin);
    ASSERT_TRUE(plugin.savePresetFile(home.path("t.tvp")));
    const std::string text = home.read("t.tvp");
    EXPECT_TRUE(text.starts_with("[Preset]\nSignature=ZK3p\nVersion=4\nAuthor=Eve\n\n[Parameters]\nBand 1 Used=1\n"));
    EXPECT_TRUE(text.ends_with("\n\n[Settings]\nx=\"a b\"\n"));
    for (AbstractPluginParameter* parameter : plugin.parameters())
        parameter->setValue(parameter->defaultValue(), 0);
    EXPECT_EQ(plugin.loadPresetFile(home.path("t.tvp")), "");
    EXPECT_EQ(valuesOf(plugin), keepingInterface(saved, standard));

    home.write("t.tvp",
               "[Preset]\nSignature=ZK3p\nVersion=4\n\n[Parameters]\nMine=1\n Band 1 Gain = 7\n\n[Settings]\na=b\n");
    plugin.parameter(3).setValue(2.0f, 0);
    ASSERT_TRUE(plugin.presetParameters().save(home.path("t.tvp"), 4, 2, 2));
    EXPECT_EQ(home.read("t.tvp"), "[Preset]\nSignature=ZK3p\nVersion=4\n\n[Parameters]\nMine=1\nBand 1 Gain=2\n"
                                  "Band 1 Frequency=14.8726739883423\n\n[Settings]\na=b\n");
    EXPECT_FALSE(plugin.presetParameters().save(home.path("t.tvp"), 5, 2, 1));
}

TEST_F(PresetFormats, InterfaceDefaultsAreSavedOneByOneAndReadByTheNextInstance) {
    const std::string file = ".local/share/Tessivane/Zelk 3/InterfaceDefaults.tvd";
    plugin.analyzer.tilt.setValue(1.0f, 0);
    plugin.pushUndo(plugin.analyzer.tilt.id());
    ASSERT_EQ(home.read(file).size(), 12u + 40u);
    EXPECT_TRUE(home.read(file).starts_with(Bytes().raw("ZK3p").i32(4).i32(10).text));
    plugin.analyzer.speed.setValue(4.0f, 0);
    plugin.analyzer.range.setValue(2.0f, 0);
    plugin.pushUndo(plugin.analyzer.speed.id());
    plugin.pushUndo(plugin.bands.set(0).gain.id());
    {
        const ZelkPlugin next;
        EXPECT_EQ(next.analyzer.tilt.value(), 1.0f);
        EXPECT_EQ(next.analyzer.speed.value(), 4.0f);
        EXPECT_EQ(next.analyzer.range.value(), 1.0f) << "one that was not saved";
    }
    home.write(file, "damaged");
    plugin.pushUndo(plugin.analyzer.tilt.id());
    const ZelkPlugin last;
    EXPECT_EQ(last.analyzer.range.value(), 2.0f);
}

} // namespace
