// What the factory presets hold: where they stand, what their bands do, how loud they are, what their page says.
#include "state/PresetManager.h"
#include "tests/state/StateTestObjects.h"
#include "tests/support/PresetLoudness.h"
#include "tools/resources/PresetCatalogue.h"

#include <cmath>
#include <fstream>
#include <functional>
#include <iterator>

namespace {

class FactoryContent : public StateTest {
protected:
    // The folder is that below the root, with its separator.
    void forEach(const std::function<void(const std::string& folder, const Preset& preset)>& visit) {
        const std::string root = home.path("Documents/Tessivane/Presets/Zelk 3/");
        PresetManager manager(root, ".tvp");
        for (const Preset* preset : manager.allPresets()) {
            SCOPED_TRACE(preset->name);
            ASSERT_EQ(plugin.loadPresetFile(preset->path), "");
            visit(preset->path.substr(root.size(), preset->path.rfind('/') + 1 - root.size()), *preset);
        }
    }

    std::vector<const EQParameterSet*> usedBands() const {
        std::vector<const EQParameterSet*> result;
        for (std::int32_t i = 0; i < bandCount; ++i)
            if (plugin.bands.set(i).used.get())
                result.push_back(&plugin.bands.set(i));
        return result;
    }

    ZelkPlugin plugin; // unpacks the presets into the home
};

TEST_F(FactoryContent, HasEveryBandDoSomethingAndTheFoldersKeepTheirPromise) {
    forEach([this](const std::string& folder, const Preset&) {
        bool isDynamic = false;
        bool isPlaced = false;
        bool isOnSpeakers = false;
        for (const EQParameterSet* band : usedBands()) {
            const bool hasGain = AnalogFilterPrototype::hasGain(band->shape.get());
            const bool moves = band->dynamicRange.get() != 0.0f;
            EXPECT_TRUE(hasGain ? band->gain.get() != 0.0f || moves : band->gain.get() == 0.0f && !moves)
                << "a band without effect, or a value without effect, at " << std::exp2(band->frequency.get()) << " Hz";
            isDynamic |= moves;
            isPlaced |= band->stereoPlacement.get() != StereoPlacement::stereo;
            isOnSpeakers |= band->speakers.get() != chl::SpeakerSet::allButLfe;
        }
        const bool inDynamic = folder.starts_with("Dynamic/");
        EXPECT_EQ(isDynamic, inDynamic);
        EXPECT_EQ(isOnSpeakers, folder == "Surround/");
        EXPECT_TRUE(inDynamic || isPlaced == (folder == "Stereo/"));
        EXPECT_FALSE(isDynamic && plugin.processingMode.get() == ProcessingMode::linearPhase &&
                     plugin.processingResolution.get() > ProcessingResolution::high)
            << "its dynamics do not run";
    });
}

// Who steps through presets compares their sound, not their level.
TEST_F(FactoryContent, StaysNearTheLoudnessOfItsInput) {
    forEach([this](const std::string& folder, const Preset&) {
        const PresetLoudness loudness(plugin, folder == "Surround/" ? chl::Layout::atmos714 : chl::Layout::stereo);
        EXPECT_NEAR(loudness.changeDb(1.0), 0.0, folder.starts_with("Dynamic/") ? 2.5 : 1.2);
        EXPECT_LE(loudness.changeDb(0.0), 2.5);
        EXPECT_GE(loudness.changeDb(0.0), -6.0) << "spill between the strokes of a drum is lowered by that much";
    });
}

TEST_F(FactoryContent, IsListedOnItsPageAsItsSourcesTell) {
    const std::string root = ZELK_SOURCE_FOLDER;
    std::ifstream file(root + "docs/presets.md", std::ios::binary);
    const std::string page{std::istreambuf_iterator<char>(file), {}};
    EXPECT_EQ(page, presetPage(readPresetCatalogue(root + "resources/presets")))
        << "zelk-pack page resources/presets docs/presets.md";
}

} // namespace
