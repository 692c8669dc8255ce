#include "analysis/SpectrumPresenter.h"
#include "base/BinaryDataReader.h"
#include "base/BinaryDataWriter.h"
#include "platform/Files.h"
#include "tests/analysis/AnalysisTestObjects.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <sstream>

namespace {

struct Reference {
    Reference(std::size_t fftSize, float rate, std::uint32_t columns, bool accumulate = true) : spectrum(fftSize) {
        presenter.setSource(&spectrum);
        presenter.sampleRate = rate;
        presenter.columnCount = columns;
        presenter.accumulate = accumulate;
        presenter.attackFactor = 0.0f;
        presenter.tilt = 3.0f;
        presenter.update(0.0);
    }

    bool load(const std::string& bytes) {
        std::istringstream input(bytes);
        BinaryDataReader reader(&input);
        const bool loaded = presenter.loadSpectrum(reader);
        presenter.update(10.0);
        return loaded;
    }
    std::vector<float> picture() const { return {presenter.columns().begin(), presenter.columns().end()}; }

    FixedSpectrum spectrum;
    SpectrumPresenter presenter{testTimer()};
};

std::string fileOf(std::int32_t fftSize, const std::vector<float>& levels, float rate, std::int32_t version = 2) {
    std::ostringstream bytes;
    BinaryDataWriter writer(&bytes);
    writer.writeHeader("TVSP", version);
    writer.writeInt32(fftSize);
    for (const float level : levels)
        writer.writeFloat(level);
    if (version >= 2)
        writer.writeFloat(rate);
    return bytes.str();
}

TEST(SpectrumFiles, KeepTheirShapeThroughOtherSizesRatesAndWidths) {
    const TestFolder folder;
    const std::string path = folder.path("hump.spectrum");
    for (const auto& [fromSize, fromRate, toSize, toRate] : {std::tuple{8192u, 44100.0f, 2048u, 96000.0f},
                                                             {1024u, 48000.0f, 8192u, 44100.0f},
                                                             {4096u, 44100.0f, 4096u, 44100.0f}}) {
        Reference saved(fromSize, fromRate, 700);
        for (std::size_t bin = 0; bin < saved.spectrum.magnitudes.size(); ++bin) { // a hump over a falling slope
            const double octaves = std::log2(std::max(static_cast<double>(bin), 0.5) * fromRate / fromSize / 2000.0);
            const double db = -40.0 + 30.0 * std::exp(-octaves * octaves) - 3.0 * octaves;
            saved.spectrum.magnitudes[bin] = static_cast<float>(std::pow(10.0, db / 20.0));
        }
        for (int frame = 0; frame < 60; ++frame) {
            ++saved.spectrum.frames;
            saved.presenter.update(10.0);
        }
        std::string bytes;
        ASSERT_TRUE(saved.presenter.saveSpectrum(path) && readFile(path, 1 << 20, bytes));
        EXPECT_EQ(bytes.size(), 16 + 4 * (fromSize / 2));
        for (const bool accumulate : {true, false}) {
            Reference loaded(toSize, toRate, 1000, accumulate);
            ASSERT_TRUE(loaded.load(bytes));
            EXPECT_FALSE(loaded.presenter.running);
            EXPECT_GE(loaded.presenter.frameCount(), 9);
            loaded.spectrum.show(1.0f); // not taken
            loaded.presenter.update(1e6);
            for (std::size_t column = 450; column < 990; column += 9)
                EXPECT_NEAR(loaded.picture()[column], saved.picture()[column * 699 / 999], 1.5f)
                    << toSize << " " << column;
        }
    }
    EXPECT_FALSE(SpectrumPresenter(testTimer()).saveSpectrum(path)) << "there is no spectrum yet";
}

TEST(SpectrumFiles, PlaceStoredBinsByFrequencyAndShowTheFloorBeyondThem) {
    Reference reference(2048, 44100.0f, 1000);
    EXPECT_TRUE(reference.load(fileOf(1024, std::vector<float>(512, -6.0f), 11025.0f)));
    EXPECT_NEAR(reference.picture()[500], -6.0f, 0.01f);
    EXPECT_NEAR(reference.picture()[999], -60.0f, 0.01f) << "above the half rate of the file";
    EXPECT_TRUE(reference.load(fileOf(1024, std::vector<float>(512, -9.0f), 0.0f, 1)));
    EXPECT_NEAR(reference.picture()[980], -9.0f, 0.01f) << "the first version takes the presenter's own rate";
    EXPECT_TRUE(reference.load(fileOf(1, {}, 44100.0f)));
    EXPECT_NEAR(reference.picture()[500], -60.0f, 0.01f) << "no stored value";
    std::vector<float> levels(4096, -50.0f);
    levels[2001] = -3.0f;
    EXPECT_TRUE(reference.load(fileOf(8192, levels, 44100.0f)));
    EXPECT_NEAR(std::ranges::max(reference.picture()), -3.0f, 0.01f) << "a lone bin among many is not lost";
}

TEST(SpectrumFiles, BadFilesLeaveThePresenterUntouched) {
    const std::vector<float> level(128, -20.0f);
    const std::string good = fileOf(256, level, 48000.0f);
    Reference reference(2048, 44100.0f, 1000);
    ASSERT_TRUE(reference.load(fileOf(256, std::vector<float>(128, -33.0f), 48000.0f)));
    reference.presenter.running = true;
    const std::vector<float> before = reference.picture();
    std::vector<std::string> bad{fileOf(0, {}, 48000.0f),
                                 fileOf(-8, {}, 48000.0f),
                                 fileOf(0x7FFFFFFF, {}, 48000.0f),
                                 fileOf(2, {NAN}, 48000.0f),
                                 fileOf(256, level, 0.0f),
                                 fileOf(256, level, -1.0f),
                                 fileOf(256, level, INFINITY),
                                 "TVSQ" + good.substr(4),
                                 fileOf(65537, std::vector<float>(32768, 0.0f), 48000.0f)};
    for (std::size_t length = 0; length < good.size(); length += 7)
        bad.push_back(good.substr(0, length));
    for (const std::string& bytes : bad) {
        EXPECT_FALSE(reference.load(bytes)) << bytes.size() << " bytes";
        EXPECT_EQ(reference.picture(), before);
        EXPECT_TRUE(reference.presenter.running);
    }
    std::mt19937 random(7);
    for (int attempt = 0; attempt < 300; ++attempt) {
        std::string bytes = good;
        for (int change = 0; change < 4; ++change)
            bytes[random() % (attempt % 2 == 0 ? 16 : bytes.size())] = static_cast<char>(random());
        Reference fresh(1024, 44100.0f, 300);
        const std::vector<float> empty = fresh.picture();
        const bool loaded = fresh.load(bytes);
        EXPECT_TRUE(loaded ? std::ranges::none_of(fresh.picture(), [](float db) { return std::isnan(db); })
                           : fresh.picture() == empty);
    }
}

} // namespace
