#include "framework/chl/Layouts.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

using namespace chl;

namespace {

Layout layoutAt(std::int32_t index) {
    return static_cast<Layout>(index);
}

TEST(Layouts, EveryRowIsWholeAndPairsStandLeftThenRightAtOneAngle) {
    std::set<std::string_view> names;
    for (std::int32_t i = 0; i < layoutCount; ++i) {
        const Layout layout = layoutAt(i);
        SCOPED_TRACE(layoutName(layout));
        EXPECT_TRUE(names.insert(layoutName(layout)).second);
        std::set<SpeakerCode> codes;
        for (std::size_t channel = 0; channel < channelCount(layout); ++channel) {
            const SpeakerCode code = speakerCode(layout, channel);
            EXPECT_TRUE(codes.insert(code).second);
            EXPECT_EQ((code & middleBit) != 0, (code & (leftBit | rightBit)) == 0);
            if ((code & leftBit) != 0) {
                EXPECT_EQ(speakerCode(layout, channel + 1), code ^ (leftBit | rightBit));
            }
        }
        EXPECT_EQ(speakerCode(layout, channelCount(layout)), 0u);
    }
}

TEST(Layouts, NamesWithNumbersTellTheChannels) {
    for (std::int32_t i = 0; i < layoutCount; ++i) {
        const std::string name(layoutName(layoutAt(i)));
        if (name.size() < 3 || name[1] != '.')
            continue;
        const bool hasTops = name.size() > 4 && name[3] == '.';
        const int told = name[0] - '0' + name[2] - '0' + (hasTops ? name[4] - '0' : 0);
        EXPECT_EQ(channelCount(layoutAt(i)), static_cast<std::size_t>(told)) << name;
        EXPECT_EQ(layoutHasSpeakerBits(layoutAt(i), lfeBit), name[2] == '1') << name;
        EXPECT_EQ(layoutHasSpeakerBits(layoutAt(i), topBit), hasTops) << name;
    }
}

TEST(SpeakerSets, TakeTheChannelsThatTheyName) {
    const auto members = [](Layout layout, SpeakerSet set) {
        std::vector<std::size_t> channels;
        for (std::size_t channel = 0; channel < channelCount(layout); ++channel) {
            if (speakerInSet(speakerCode(layout, channel), set))
                channels.push_back(channel);
        }
        EXPECT_EQ(layoutHasSet(layout, set), !channels.empty());
        return channels;
    };
    using Channels = std::vector<std::size_t>;
    EXPECT_TRUE(layoutHasSet(Layout::surround51, SpeakerSet::lfe));
    EXPECT_FALSE(layoutHasSet(Layout::surround50, SpeakerSet::lfe));
    EXPECT_EQ(members(Layout::sdss71, SpeakerSet::leftRight), (Channels{0, 1}));
    EXPECT_EQ(members(Layout::sdss71, SpeakerSet::frontCenter), (Channels{2, 3}));
    EXPECT_EQ(members(Layout::surround61, SpeakerSet::front), (Channels{0, 1, 4}));
    EXPECT_EQ(members(Layout::surround61, SpeakerSet::center), (Channels{4}));
    EXPECT_EQ(members(Layout::surround61, SpeakerSet::centerSurround), (Channels{5}));
    EXPECT_EQ(members(Layout::surround61, SpeakerSet::surround), (Channels{2, 3}));
    EXPECT_EQ(members(Layout::surround61, SpeakerSet::allButLfe), (Channels{0, 1, 2, 3, 4, 5}));
    // Pairs take the tops above them along, the front does not.
    EXPECT_EQ(members(Layout::atmos714, SpeakerSet::leftRight), (Channels{0, 1, 6, 7}));
    EXPECT_EQ(members(Layout::atmos714, SpeakerSet::front), (Channels{0, 1, 10}));
    EXPECT_EQ(members(Layout::atmos714, SpeakerSet::surroundRear), (Channels{4, 5, 8, 9}));
    EXPECT_EQ(members(Layout::atmos714, SpeakerSet::topFront), (Channels{6, 7}));
    EXPECT_EQ(members(Layout::atmos712, SpeakerSet::surroundSide), (Channels{2, 3, 6, 7}));
    EXPECT_EQ(members(Layout::atmos712, SpeakerSet::topSide), (Channels{6, 7}));
    EXPECT_EQ(members(Layout::atmos714, SpeakerSet::topRear), (Channels{8, 9}));
    EXPECT_EQ(members(Layout::itu916, SpeakerSet::frontCenter), members(Layout::atmos916, SpeakerSet::wide));
    for (std::int32_t i = 0; i <= 12; ++i)
        EXPECT_FALSE(layoutHasSet(layoutAt(i), SpeakerSet::tops));
}

TEST(Layouts, WithoutALayoutEveryQuestionHasAnAnswer) {
    for (const Layout layout : {Layout::none, layoutAt(layoutCount), layoutAt(-2147483647)}) {
        int centers = 1, lfes = 1, tops = 1;
        EXPECT_EQ(speakerCounts(layout, centers, lfes, tops), 0u);
        EXPECT_EQ(centers + lfes + tops, 0);
        EXPECT_TRUE(layoutName(layout).empty());
        EXPECT_FALSE(layoutHasSet(layout, SpeakerSet::all));
        EXPECT_EQ(displayChannel(layout, 7), 7u);
        EXPECT_EQ(displayGroup(layout, 7), 0u);
    }
}

} // namespace
