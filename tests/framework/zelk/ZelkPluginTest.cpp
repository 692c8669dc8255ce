#include "framework/zelk/ZelkPlugin.h"

#include <gtest/gtest.h>

#include <set>

namespace {

std::set<std::int32_t> idsThatMoveLatency(const ZelkParameters& parameters) {
    std::set<std::int32_t> ids;
    for (std::int32_t id = -1; id < ZelkParameters::total; ++id)
        if (parameters.movesLatency(id))
            ids.insert(id);
    return ids;
}

TEST(ZelkPlugin, LatencyMovesOnTheIdsThatCanMoveItAndOnAllOnceABandIsUsed) {
    ZelkPlugin plugin;
    std::set<std::int32_t> wanted{-1, 312, 313};
    for (std::int32_t band = 0; band < 24; ++band)
        wanted.insert(13 * band + 10);
    EXPECT_EQ(idsThatMoveLatency(plugin), wanted);
    plugin.bands.set(5).used.setValue(1.0f, 0);
    EXPECT_EQ(idsThatMoveLatency(plugin).size(), 359u);
}

} // namespace
