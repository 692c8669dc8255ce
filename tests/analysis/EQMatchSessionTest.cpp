#include "analysis/EQMatchSession.h"
#include "base/BinaryDataReader.h"
#include "base/BinaryDataWriter.h"
#include "eq/BandDesign.h"
#include "tests/analysis/AnalysisTestObjects.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>

namespace {

struct FakeBands final : EQMatchPlacement::Bands {
    bool isUsed(std::size_t band) const override { return used.contains(band); }
    void beginChange() override { ++depth; }
    void endChange() override { --depth; }
    void setBand(std::size_t band, const EQMatchBand& values) override {
        EXPECT_EQ(depth, 1);
        used.insert_or_assign(band, values);
    }
    void releaseBand(std::size_t band) override {
        EXPECT_EQ(depth, 1);
        used.erase(band);
    }
    void pushUndo() override { ++undoSteps; }

    std::map<std::size_t, EQMatchBand> used;
    int depth = 0;
    int undoSteps = 0;
};

// The reference has 12 dB more around 1 kHz and 8 dB less around 5 kHz.
struct Studio {
    Studio() {
        for (SpectrumPresenter* each : {&input, &reference})
            each->columnCount = 600;
        input.setSource(&inputSpectrum);
        reference.setSource(&referenceSpectrum);
        inputSpectrum.magnitudes.assign(4097, 0.01f);
        for (std::size_t bin = 0; bin <= 4096; ++bin) {
            const double hz = std::max(static_cast<double>(bin), 0.5) * 44100.0 / 8192.0;
            double db = -40.0;
            for (const auto& [centre, height] : {std::pair{1000.0, 12.0}, {5000.0, -8.0}}) {
                AnalogFilterPrototype band;
                designBand(FilterShape::bell, FilterSlope::db12, static_cast<float>(height), 1.0f, centre, band, 640.0);
                db += 10.0 * std::log10(band.squaredMagnitude(hz));
            }
            referenceSpectrum.magnitudes[bin] = static_cast<float>(std::pow(10.0, db / 20.0));
        }
    }

    void play(int looks) {
        for (; looks > 0; --looks) {
            ++inputSpectrum.frames;
            ++referenceSpectrum.frames;
            input.update(20.0);
            reference.update(20.0);
        }
    }

    FixedSpectrum inputSpectrum{8192};
    FixedSpectrum referenceSpectrum{8192};
    SpectrumPresenter input{testTimer()};
    SpectrumPresenter reference{testTimer()};
    FakeBands bands;
    EQMatchSession session{input, reference, bands};
};

TEST(EQMatchSession, TurnsTheDifferenceOfTwoAveragesIntoBandsThatTheSliderTakesAndGivesBack) {
    Studio studio;
    EQMatchSession& session = studio.session;
    studio.bands.used.emplace(0, EQMatchBand(AnalogFilterPrototype{}));
    session.analyze();
    studio.play(8);
    session.match();
    EXPECT_EQ(session.mode(), EQMatchSession::Mode::analyzing) << "eight frames are not enough";
    EXPECT_EQ(session.difference(), std::vector<float>(600, 0.0f));
    studio.play(30);
    session.match();
    ASSERT_EQ(session.mode(), EQMatchSession::Mode::matched);
    EXPECT_FALSE(studio.input.running || studio.reference.running);
    ASSERT_GE(session.bandCount(), 2u);
    EXPECT_EQ(studio.bands.used.size(), session.bandCount() + 1);
    const EQMatchBand& first = studio.bands.used.at(1);
    EXPECT_EQ(first.shape, FilterShape::bell);
    EXPECT_NEAR(first.log2Frequency, std::log2(1000.0f), 0.2f);
    EXPECT_NEAR(first.gainDb, 12.0f, 2.0f);
    // Designed from its plain values, as the plug-in does it, a band is the one that was found.
    AnalogFilterPrototype designed;
    designBand(first.shape, first.slope, first.gainDb, first.q, std::exp2(first.log2Frequency), designed, 640.0);
    AnalogFilterPrototype found = session.found()[0];
    for (const double hz : {100.0, 700.0, 1000.0, 3000.0})
        EXPECT_NEAR(designed.squaredMagnitude(hz), found.squaredMagnitude(hz), 1e-3);

    session.setBandCount(4);
    const float third = studio.bands.used.at(3).log2Frequency;
    session.setBandCount(2);
    EXPECT_FALSE(studio.bands.used.contains(3));
    studio.bands.used.emplace(20, EQMatchBand(AnalogFilterPrototype{})); // the user's own
    session.setBandCount(3);
    EXPECT_EQ(studio.bands.used.at(3).log2Frequency, third) << "it comes back where it stood";
    session.finish();
    EXPECT_EQ(studio.bands.undoSteps, 1);
    EXPECT_EQ(studio.bands.used.size(), 5u);
    EXPECT_FALSE(studio.input.accumulate);
    session.analyze();
    session.cancel();
    EXPECT_EQ(studio.bands.used.size(), 5u) << "finished bands are the user's";
    EXPECT_EQ(studio.bands.undoSteps, 1);
}

TEST(EQMatchSession, GoingBackOrCancellingTakesItsBandsAway) {
    Studio studio;
    studio.session.analyze();
    studio.play(20);
    studio.session.match();
    EXPECT_FALSE(studio.bands.used.empty());
    studio.session.recordInput = false;
    studio.session.analyze();
    EXPECT_TRUE(studio.bands.used.empty());
    EXPECT_FALSE(studio.input.running);
    EXPECT_EQ(studio.reference.frameCount(), 0) << "what records begins anew";
    EXPECT_EQ(studio.input.frameCount(), 20);
    studio.play(20);
    for (std::size_t band = 0; band < 24; ++band)
        studio.bands.used.emplace(band, EQMatchBand(AnalogFilterPrototype{}));
    studio.session.match();
    EXPECT_EQ(studio.session.verdict(), EQMatchPlacement::Verdict::noneFree);
    studio.bands.used.erase(17);
    studio.session.setBandCount(1);
    EXPECT_EQ(studio.bands.used.size(), 24u);
    studio.session.cancel();
    EXPECT_FALSE(studio.bands.used.contains(17));
    EXPECT_EQ(studio.bands.used.size(), 23u);
    EXPECT_EQ(studio.bands.undoSteps, 0);
}

TEST(EQMatchSession, EachKindOfReferenceDrivesTheRecordButtonsItsWay) {
    Studio studio;
    EQMatchSession& session = studio.session;
    session.analyze();
    EXPECT_TRUE(session.recordInput && session.recordReference);
    session.chooseReference(EQMatchSession::Reference::input);
    EXPECT_TRUE(!session.recordInput && session.recordReference);
    session.recordInput = true;
    EXPECT_TRUE(session.recordInput && !session.recordReference) << "only one listens at a time";
    EXPECT_TRUE(studio.input.running && !studio.reference.running);
    session.chooseReference(EQMatchSession::Reference::external);
    EXPECT_TRUE(session.recordInput && session.recordReference);

    studio.play(1); // a size
    for (const bool whole : {false, true}) {
        std::stringstream file;
        BinaryDataWriter writer(&file);
        writer.writeHeader("TVSP", 1);
        writer.writeInt32(2);
        if (whole)
            writer.writeFloat(-20.0f);
        BinaryDataReader reader(&file);
        EXPECT_EQ(session.loadReference(reader), whole);
        EXPECT_EQ(session.reference(), whole ? EQMatchSession::Reference::file : EQMatchSession::Reference::external);
    }
    session.recordReference = true;
    EXPECT_FALSE(session.recordReference || studio.reference.running) << "what is loaded does not grow";
    studio.play(20);
    EXPECT_TRUE(session.canMatch());
    session.match();
    session.analyze();
    EXPECT_FALSE(studio.reference.running);
    EXPECT_GE(studio.reference.frameCount(), 9) << "the loaded spectrum is still there";
}

} // namespace
