#include "analysis/SpectrumPresenter.h"
#include "base/BinaryDataWriter.h"
#include "platform/BinaryFiles.h"
#include "platform/Files.h"
#include "tests/analysis/AnalysisTestObjects.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
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

std::string fileOf(std::int32_t fftSize, const std::vector<float>& levels, float rate, std::int32_t version = 2,
                   const char* signature = "TVSP") {
    std::ostringstream bytes;
    BinaryDataWriter writer(&bytes);
    writer.writeHeader(signature, version);
    writer.writeInt32(fftSize);
    for (const float level : levels)
        writer.writeFloat(level);
    if (version >= 2)
        writer.writeFloat(rate);
    return bytes.str();
}

class SpectrumFiles : public testing::Test {
protected:
    void TearDown() override { std::filesystem::remove(path); }
    const std::string path =
        (std::filesystem::temp_directory_path() / ("zelk" + std::to_string(std::random_device{}()) + ".spectrum"))
            .string();
};

// A hump of 30 dB around 2 kHz over a slope of 3 dB per octave.
float shapeDb(double f) {
    const double away = std::log2(std::max(f, 10.0) / 2000.0);
    return static_cast<float>(-40.0 + 30.0 * std::exp(-away * away) - 3.0 * away);
}

TEST_F(SpectrumFiles, KeepTheirShapeThroughOtherSizesRatesAndWidths) {
    for (const auto& [fromSize, fromRate, toSize, toRate] : {std::tuple{8192u, 44100.0f, 2048u, 96000.0f},
                                                             {1024u, 48000.0f, 8192u, 44100.0f},
                                                             {4096u, 44100.0f, 4096u, 44100.0f}}) {
        Reference saved(fromSize, fromRate, 700);
        for (std::size_t bin = 0; bin < saved.spectrum.magnitudes.size(); ++bin)
            saved.spectrum.magnitudes[bin] =
                std::pow(10.0f, shapeDb(static_cast<double>(bin) * static_cast<double>(fromRate) / fromSize) / 20.0f);
        for (int frame = 0; frame < 60; ++frame) {
            ++saved.spectrum.frames;
            saved.presenter.update(10.0);
        }
        ASSERT_TRUE(saved.presenter.saveSpectrum(path));
        EXPECT_EQ(std::filesystem::file_size(path), 16 + 4 * (fromSize / 2));
        for (const bool accumulate : {true, false}) {
            Reference loaded(toSize, toRate, 1000, accumulate);
            BinaryFileReader reader(openFile(path, std::ios::in | std::ios::binary));
            ASSERT_TRUE(loaded.presenter.loadSpectrum(reader));
            EXPECT_FALSE(loaded.presenter.running);
            EXPECT_GE(loaded.presenter.frameCount(), 9);
            loaded.spectrum.show(1.0f);
            for (int look = 0; look < 100; ++look)
                loaded.presenter.update(100.0);
            for (std::size_t column = 450; column < 990; column += 9) {
                const auto before = saved.presenter.columns()[column * 699 / 999];
                EXPECT_NEAR(loaded.presenter.columns()[column], before, 1.5f)
                    << fromSize << " to " << toSize << " at " << column << (accumulate ? " accumulated" : "");
            }
        }
    }
}

TEST_F(SpectrumFiles, HoldWhatTheirLayoutSays) {
    Reference saved(32, 44100.0f, 500);
    saved.presenter.accumulate = false;
    saved.presenter.tilt = 0.0f;
    saved.spectrum.show(1.0f);
    saved.presenter.update(10.0);
    ASSERT_TRUE(saved.presenter.saveSpectrum(path));
    std::string bytes;
    ASSERT_TRUE(readFile(path, 1000, bytes));
    EXPECT_EQ(bytes, fileOf(32, std::vector<float>(16, 0.0f), 44100.0f));
    const SpectrumPresenter unused(testTimer());
    EXPECT_FALSE(unused.saveSpectrum(path)) << "it has no spectrum";
    EXPECT_FALSE(saved.presenter.saveSpectrum(path + "/no/such/folder"));
}

TEST_F(SpectrumFiles, PlaceStoredBinsByFrequencyAndShowTheFloorBeyondThem) {
    Reference reference(2048, 44100.0f, 1000);
    EXPECT_TRUE(reference.load(fileOf(1024, std::vector<float>(512, -6.0f), 11025.0f)));
    EXPECT_NEAR(reference.picture()[500], -6.0f, 0.01f);
    EXPECT_NEAR(reference.picture()[999], -60.0f, 0.01f) << "above the half rate of the file";
    EXPECT_TRUE(reference.load(fileOf(1024, std::vector<float>(512, -9.0f), 0.0f, 1)));
    EXPECT_NEAR(reference.picture()[980], -9.0f, 0.01f) << "the first version takes the presenter's own rate";
    EXPECT_TRUE(reference.load(fileOf(1, {}, 44100.0f)));
    EXPECT_NEAR(reference.picture()[500], -60.0f, 0.01f) << "no stored value";
    // A lone stored bin among many in one of the presenter's bins is not lost, and what lies between two stored bins
    // is interpolated.
    std::vector<float> levels(4096, -50.0f);
    levels[2001] = -3.0f;
    EXPECT_TRUE(reference.load(fileOf(8192, levels, 44100.0f)));
    const std::vector<float> picture = reference.picture();
    EXPECT_NEAR(*std::max_element(picture.begin(), picture.end()), -3.0f, 0.01f);
}

TEST_F(SpectrumFiles, BadFilesLeaveThePresenterUntouched) {
    Reference reference(2048, 44100.0f, 1000);
    const std::string good = fileOf(256, std::vector<float>(128, -20.0f), 48000.0f);
    ASSERT_TRUE(reference.load(fileOf(256, std::vector<float>(128, -33.0f), 48000.0f)));
    reference.presenter.running = true;
    const std::vector<float> before = reference.picture();
    std::vector<std::string> bad{"",
                                 "TVSP",
                                 fileOf(0, {}, 48000.0f),
                                 fileOf(-8, {}, 48000.0f),
                                 fileOf(65537, std::vector<float>(32768, 0.0f), 48000.0f),
                                 fileOf(0x7FFFFFFF, {}, 48000.0f),
                                 fileOf(2, {NAN}, 48000.0f),
                                 fileOf(2, {INFINITY}, 48000.0f),
                                 fileOf(256, std::vector<float>(128, -20.0f), 0.0f),
                                 fileOf(256, std::vector<float>(128, -20.0f), -1.0f),
                                 fileOf(256, std::vector<float>(128, 0.0f), NAN),
                                 fileOf(256, std::vector<float>(128, -20.0f), 48000.0f, 2, "TVSQ")};
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
        if (!fresh.load(bytes))
            EXPECT_EQ(fresh.picture(), empty);
        else
            for (const float column : fresh.picture())
                ASSERT_FALSE(std::isnan(column));
    }
    SpectrumPresenter unknown(testTimer());
    std::istringstream input(good);
    BinaryDataReader reader(&input);
    EXPECT_FALSE(unknown.loadSpectrum(reader)) << "its own size is not known yet";
}

} // namespace
