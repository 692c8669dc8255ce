#include "framework/zelk/ZelkParameters.h"

#include "framework/zelk/ZelkPlugin.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

// Every value of a stepped parameter, a fine grid over a continuous one, its ends and its default.
std::vector<float> valuesOf(const AbstractPluginParameter& parameter) {
    std::vector<float> values;
    const bool stepped = parameter.kind() == AbstractPluginParameter::Kind::stepped;
    const int steps = stepped ? static_cast<int>(parameter.maximum() - parameter.minimum()) : 500;
    const int stride = std::max(steps / 1000, 1);
    for (int step = 0; step <= steps; step += stride)
        values.push_back(stepped ? parameter.minimum() + static_cast<float>(step)
                                 : parameter.denormalize(step / 500.0));
    values.push_back(parameter.defaultValue());
    values.push_back(parameter.maximum());
    return values;
}

TEST(ZelkParameters, NormalizedAndUnitValuesGoBothWaysForEveryParameter) {
    const ZelkPlugin plugin;
    for (std::int32_t id = 0; id < ZelkParameters::total; ++id) {
        const AbstractPluginParameter& parameter = plugin.parameter(id);
        const double range = static_cast<double>(parameter.maximum() - parameter.minimum());
        ASSERT_GT(range, 0.0);
        double before = -1.0;
        for (const float value : valuesOf(parameter)) {
            const double normalized = parameter.normalize(value);
            ASSERT_TRUE(normalized >= 0.0 && normalized <= 1.0) << id;
            ASSERT_NEAR(parameter.denormalize(normalized), value, 1e-6 * range) << parameter.longName();
            if (value != parameter.defaultValue()) {
                ASSERT_GE(normalized, before) << id;
                before = normalized;
            }
            // What lies deeper than a level can be told is silence all the same.
            const double unit = parameter.unitFromValue(value);
            ASSERT_TRUE(std::isfinite(unit)) << id;
            if (unit > -100.0) {
                ASSERT_NEAR(parameter.valueFromUnit(unit), value, 2e-6 * range) << parameter.longName();
            }
            ASSERT_NEAR(parameter.displayFromValue(parameter.valueFromDisplay(parameter.displayFromValue(value))),
                        parameter.displayFromValue(value), 1e-4 * (1.0 + std::fabs(parameter.displayFromValue(value))));
        }
        EXPECT_EQ(parameter.denormalize(std::nan("")), parameter.minimum());
        EXPECT_EQ(parameter.denormalize(7.0), parameter.maximum());
    }
}

TEST(ZelkParameters, MeaningsOfStoredValues) {
    ZelkPlugin plugin;
    EQParameterSet& band = plugin.bands.set(0);
    EXPECT_NEAR(band.frequency.unitFromValue(9.965784f), 1000.0, 0.01);
    EXPECT_NEAR(band.q.unitFromValue(0.0f), 0.025, 1e-7);
    EXPECT_NEAR(band.q.unitFromValue(0.5f), 1.0, 1e-7);
    EXPECT_NEAR(band.q.unitFromValue(1.0f), 40.0, 1e-5);
    float value = 0.0f;
    ASSERT_TRUE(band.q.parseText("Q: 2", value));
    EXPECT_NEAR(band.q.unitFromValue(value), 2.0, 1e-5);
    const auto thresholdText = [&](float stored) { return band.threshold.text(stored); };
    EXPECT_EQ(thresholdText(0.0f), "-90.0 dB");
    EXPECT_EQ(thresholdText(0.1f), "-72.0 dB");
    EXPECT_EQ(thresholdText(0.2f), "-48.0 dB");
    EXPECT_EQ(thresholdText(1.0f), "Auto");
    ASSERT_TRUE(band.threshold.parseText(" auto", value));
    EXPECT_EQ(value, 1.0f);
    ASSERT_TRUE(band.threshold.parseText("72", value));
    EXPECT_NEAR(value, 0.1f, 1e-6f);
    EXPECT_EQ(plugin.gainScale.text(1.0f), "100.0%");
    EXPECT_NEAR(plugin.outputLevel.displayFromValue(0.0f), 1.0, 1e-7);
    EXPECT_NEAR(plugin.outputLevel.valueFromDisplay(1.0), 0.0f, 1e-7f);
    EXPECT_NEAR(plugin.outputLevel.unitFromValue(1.0f), 36.0, 1e-4);
    EXPECT_EQ(plugin.outputLevel.displayFromValue(-1.0f), 0.0);
    EXPECT_NEAR(plugin.outputLevel.displayFromValue(std::nextafter(-0.6f, -1.0f)), 0.083176374, 1e-6) << "the joint";
    band.shape.setValue(4.0f, 0);
    EXPECT_EQ(band.shape.get(), FilterShape{0});
    EXPECT_EQ(band.shape.iconIndex(), 3);
    band.speakers.setValue(12.0f, 0);
    EXPECT_EQ(band.speakers.get(), chl::SpeakerSet::wide);
    ASSERT_TRUE(band.speakers.denormalizeForVersion(1.0, 0, value));
    EXPECT_EQ(value, 10.0f);
}

} // namespace
