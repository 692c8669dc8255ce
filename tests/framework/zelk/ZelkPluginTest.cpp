#include "framework/zelk/ZelkPlugin.h"

#include "framework/ChangeBracket.h"
#include "framework/PluginInstances.h"
#include "framework/zelk/ZelkProcessor.h"
#include "tests/support/TemporaryHome.h"

#include <gtest/gtest.h>

#include <set>
#include <sstream>

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

TEST(ZelkPlugin, LatencyFollowsModeResolutionRateAndChains) {
    ZelkPlugin plugin;
    plugin.setSampleRate(48000.0f);
    EXPECT_EQ(plugin.latency(), 0);
    plugin.processingMode.setValue(1.0f, 0);
    EXPECT_EQ(plugin.latency(), 320);
    plugin.processingMode.setValue(2.0f, 0);
    const std::int32_t latencies[] = {3072, 5120, 9216, 17408, 66560};
    for (int resolution = 0; resolution < 5; ++resolution) {
        plugin.processingResolution.setValue(static_cast<float>(resolution), 0);
        EXPECT_EQ(plugin.latency(), latencies[resolution]);
    }
    plugin.setSampleRate(96000.0f);
    EXPECT_EQ(plugin.latency(), 133120);
    plugin.processingResolution.setValue(0.0f, 0);
    plugin.bands.set(0).used.setValue(1.0f, 0);
    plugin.bands.set(0).stereoPlacement.setValue(0.0f, 0);
    EXPECT_EQ(plugin.latency(), 6144);
    plugin.bands.set(1).stereoPlacement.setValue(3.0f, 0);
    plugin.bands.set(1).used.setValue(1.0f, 0);
    EXPECT_EQ(plugin.latency(), 2 * 6144) << "two chains stand one behind the other";
    {
        const ChangeBracket batch(plugin);
        plugin.processingMode.setValue(1.0f, 0);
        EXPECT_EQ(plugin.latency(), 2 * 6144) << "once, at the end of the batch";
    }
    EXPECT_EQ(plugin.latency(), 640);
}

TEST(ZelkPlugin, SettingsOfTheProductAreStoredBesideThoseOfTheFramework) {
    const TemporaryHome home;
    ZelkPlugin plugin;
    EXPECT_FALSE(plugin.zelkSettings().pianoRoll);
    EXPECT_TRUE(plugin.zelkSharedSettings().showMouseFrequency);
    plugin.zelkSettings().pianoRoll = true;
    ZelkPlugin second;
    EXPECT_TRUE(second.zelkSettings().pianoRoll);
    std::istringstream lines(home.read(".config/Tessivane/Zelk/3.0.conf"));
    int values = 0;
    for (std::string line; std::getline(lines, line);)
        values += line.find('=') != std::string::npos ? 1 : 0;
    EXPECT_EQ(values, 7 + 3 + 4 + 3 + 2);
    int width = 0;
    int height = 9999;
    plugin.constrainSize(width, height);
    EXPECT_EQ(width, 720);
    EXPECT_EQ(height, 9999);
    EXPECT_EQ(plugin.interfaceWidth(), 900) << "row 2";
}

class Probe final : public AdoptedObject {
public:
    explicit Probe(int& counter) : alive(counter) { ++alive; }
    ~Probe() override { --alive; }

private:
    int& alive;
};

TEST(ZelkPlugin, WhatInstancesShareGoesWithTheLast) {
    int alive = 0;
    auto first = std::make_unique<ZelkPlugin>();
    PluginInstances::ofProcess().adopt(std::make_unique<Probe>(alive));
    const auto* const shared = &first->sharedSettings();
    auto second = std::make_unique<ZelkPlugin>();
    EXPECT_EQ(&second->sharedSettings(), shared);
    first.reset();
    EXPECT_EQ(alive, 1);
    second->sharedSettings().showWelcomeHint = false; // does not need the instance that made it
    EXPECT_NE(PluginInstances::ofProcess().shared<Probe>(), nullptr);
    second.reset();
    EXPECT_EQ(alive, 0);
    EXPECT_EQ(PluginInstances::ofProcess().shared<Probe>(), nullptr);
}

} // namespace
