#include "analysis/EQMatchSession.h"
#include "eq/BandDesign.h"
#include "tests/analysis/AnalysisTestObjects.h"

#include <gtest/gtest.h>

#include <map>

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

// The reference has 12 dB more around 1 kHz.
struct Studio {
    Studio() {
        for (SpectrumPresenter* each : {&input, &reference})
            each->columnCount = 600;
        input.setSource(&inputSpectrum);
        reference.setSource(&referenceSpectrum);
        AnalogFilterPrototype bell;
        designBand(FilterShape::bell, FilterSlope::db12, 12.0f, 1.0f, 1000.0, bell, 640.0);
        for (std::size_t bin = 0; bin <= 4096; ++bin) {
            const double power = bell.squaredMagnitude(std::max(static_cast<double>(bin), 0.5) * 44100.0 / 8192.0);
            inputSpectrum.magnitudes[bin] = 0.01f;
            referenceSpectrum.magnitudes[bin] = 0.01f * static_cast<float>(std::sqrt(power));
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
    EXPECT_EQ(studio.bands.used.size(), session.bandCount() + 1);
    const EQMatchBand& first = studio.bands.used.at(1);
    EXPECT_EQ(first.shape, FilterShape::bell);
    EXPECT_EQ(first.slope, FilterSlope::db12);
    EXPECT_NEAR(first.log2Frequency, std::log2(1000.0f), 0.05f);
    EXPECT_NEAR(first.gainDb, 12.0f, 0.5f);
    EXPECT_NEAR(first.q, 1.0f, 0.15f) << "the plain one";

    session.setBandCount(4);
    const float third = studio.bands.used.at(3).log2Frequency;
    session.setBandCount(2);
    EXPECT_FALSE(studio.bands.used.contains(3));
    session.setBandCount(3);
    EXPECT_EQ(studio.bands.used.at(3).log2Frequency, third) << "it comes back where it stood";
    session.finish();
    EXPECT_EQ(studio.bands.undoSteps, 1);
    EXPECT_FALSE(studio.input.accumulate);
    session.analyze();
    session.cancel();
    EXPECT_EQ(studio.bands.used.size(), 4u) << "finished bands are the user's";
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

} // namespace
