#include "tests/wave/GraphTestObjects.h"
#include "wave/LevelPanConverter.h"

#include <gtest/gtest.h>

namespace {

TEST(LevelPanConverter, ThePanTakesFromTheFarSideAndLeavesTheNearOne) {
    wave::Environment environment;
    LevelPanConverter converter(environment);
    const auto gains = [&](float level, float pan, bool invert) {
        environment.resetAll(); // values jump
        converter.level.assign(level);
        converter.pan.assign(pan);
        converter.invert = invert;
        runCycle(environment, 9, {&converter.output(0)});
        return std::pair((*converter.output(0).getOutput())[8], (*converter.output(1).getOutput())[8]);
    };
    for (const float sign : {1.0f, -1.0f}) {
        const bool invert = sign < 0.0f;
        EXPECT_EQ(gains(2.0f, 0.0f, invert), std::pair(2.0f * sign, 2.0f * sign));
        EXPECT_EQ(gains(2.0f, 1.0f, invert), std::pair(0.0f * sign, 2.0f * sign));
        EXPECT_EQ(gains(2.0f, -1.0f, invert), std::pair(2.0f * sign, 0.0f * sign));
        EXPECT_EQ(gains(8.0f, 0.25f, invert), std::pair(6.0f * sign, 8.0f * sign));
        EXPECT_EQ(converter.output(0).getOutput()->isConstant & converter.output(1).getOutput()->isConstant, 1u);
    }
    gains(1.0f, 0.0f, false);
    EXPECT_EQ(converter.output(0).getOutput(), converter.output(1).getOutput()) << "the level's own block, twice";
    for (const bool invert : {false, true}) { // while both move
        gains(1.0f, 0.0f, invert);
        converter.level.parameter().setValue(3.0f, 10.0f);
        converter.pan.parameter().setValue(invert ? -1.0f : 1.0f, 10.0f);
        runCycle(environment, 200, {&converter.output(0)});
        const float done = 199.0f / 441.0f;
        const float level = (1.0f + 2.0f * done) * (invert ? -1.0f : 1.0f);
        EXPECT_NEAR((*converter.output(invert ? 0 : 1).getOutput())[199], level, 1e-5f);
        EXPECT_NEAR((*converter.output(invert ? 1 : 0).getOutput())[199], level * (1.0f - done), 1e-5f);
        EXPECT_EQ(converter.output(0).getOutput()->isConstant, 0u);
    }
}

} // namespace
