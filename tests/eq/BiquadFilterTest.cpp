#include "eq/BiquadFilter.h"

#include "tests/eq/FilterRig.h"

#include <gtest/gtest.h>

namespace {

const std::vector<double> half{0.5, 0.0, 0.0, 0.0, 0.0};

// Bells of +6 dB, w apart.
std::vector<double> bells(std::size_t sections, double w = 0.05) {
    std::vector<double> rows;
    for (std::size_t s = 1; s <= sections; ++s) {
        const double at = w * static_cast<double>(s), alpha = std::sin(at), gain = 1.41;
        const double a0 = 1.0 + alpha / gain;
        rows.insert(rows.end(), {(1.0 + alpha * gain) / a0, -2.0 * std::cos(at) / a0, (1.0 - alpha * gain) / a0,
                                 -2.0 * std::cos(at) / a0, (1.0 - alpha / gain) / a0});
    }
    return rows;
}

TEST(BiquadFilter, SwitchedOffFadesForTwentyMillisecondsAndThenHandsOnItsInput) {
    FilterRig rig;
    FixedFilter filter(rig, half);
    const Sound ones(3000, 1.0f);
    const Sound out = rig.run(filter, ones, 250, [&](std::size_t at) {
        if (at == 500)
            filter.enabled = false;
    });
    EXPECT_EQ(out[499], 0.5f);
    for (std::size_t i = 500; i < 1460; ++i)
        ASSERT_NEAR(out[i], 0.5f + 0.5f * static_cast<float>(i - 500) / 960.0f, 1e-4f) << i;
    EXPECT_EQ(out[1460], 1.0f);
    EXPECT_EQ(filter.getOutput(), rig.inputs[0].getOutput());
    EXPECT_EQ(filter.calculations, 6);

    filter.enabled = true;
    const Sound back = rig.run(filter, ones);
    EXPECT_EQ(back[0], 1.0f);
    EXPECT_NEAR(back[480], 0.75f, 1e-3f);
    EXPECT_EQ(back[960], 0.5f);
}

TEST(BiquadFilter, SwitchedBeforeAnySoundJumps) {
    FilterRig rig;
    FixedFilter filter(rig, half);
    filter.enabled = false;
    EXPECT_EQ(rig.run(filter, Sound(10, 1.0f))[0], 1.0f);
    rig.environment.resetAll();
    filter.enabled = true;
    EXPECT_EQ(rig.run(filter, Sound(10, 1.0f))[0], 0.5f);
}

TEST(BiquadFilter, AFadeGoesOnWhileNobodyListens) {
    FilterRig rig;
    FixedFilter filter(rig, half);
    rig.run(filter, Sound(256, 1.0f));
    filter.enabled = false;
    rig.run(filter, Sound(100, 1.0f));
    rig.cycle({}, 100);
    EXPECT_NEAR(rig.run(filter, Sound(100, 1.0f))[0], 0.5f + 0.5f * 200.0f / 960.0f, 1e-4f);
    for (int i = 0; i < 10; ++i)
        rig.cycle({}, 100);
    EXPECT_EQ(rig.run(filter, Sound(100, 1.0f))[0], 1.0f);
}

TEST(BiquadFilter, AGapInTheStreamStartsFromThePresentInputIfAskedTo) {
    // DC gain 1, and slow: a pole at 0.99.
    const std::vector<double> slow{0.01, 0.0, 0.0, -0.99, 0.0};
    for (const bool follow : {true, false}) {
        FilterRig rig;
        FixedFilter filter(rig, slow);
        filter.processor.resetMode =
            follow ? BiquadProcessor::ResetMode::resetFollowInput : BiquadProcessor::ResetMode::resetClear;
        const Sound first = rig.run(filter, Sound(100, 0.5f));
        EXPECT_FLOAT_EQ(first[0], 0.005f); // a new filter begins with silence in either mode
        rig.cycle({}, 64);
        const Sound later = rig.run(filter, Sound(100, 0.5f));
        EXPECT_EQ(later[0], follow ? 0.5f : 0.005f);
        EXPECT_EQ(later[99] == 0.5f, follow);
    }
}

TEST(BiquadFilter, ALinkedPairEqualsTwoAloneAndCalculatesOnce) {
    const Sound sounds[] = {sine(500.0, 4000), sine(1500.0, 4000)};
    for (const std::size_t sections : {1u, 3u, 8u}) {
        FilterRig linked, alone;
        FixedFilter left(linked, bells(sections)), right(linked, bells(sections), 1);
        FixedFilter single0(alone, bells(sections)), single1(alone, bells(sections), 1);
        right.setPartner(&left);
        right.setLink(true);
        for (std::size_t at = 0, turn = 0; at < 4000; ++turn) {
            const std::size_t count = std::min<std::size_t>(4000 - at, 1 + turn * 67 % 256);
            for (FilterRig* const rig : {&linked, &alone})
                for (int c = 0; c < 2; ++c)
                    rig->inputs[c].setSamples({sounds[c].data() + at, count});
            wave::Filter* const pair[] = {&left, &right};
            wave::Filter* const turned[] = {&right, &left}; // whoever comes first runs both
            wave::Filter* const singles[] = {&single0, &single1};
            linked.cycle(turn % 3 == 0 ? turned : pair, static_cast<std::int32_t>(count));
            alone.cycle(singles, static_cast<std::int32_t>(count));
            for (std::size_t i = 0; i < count; ++i) {
                ASSERT_NEAR((*left.getOutput())[i], (*single0.getOutput())[i], 2e-5f);
                ASSERT_NEAR((*right.getOutput())[i], (*single1.getOutput())[i], 2e-5f);
            }
            at += count;
        }
        EXPECT_EQ(left.calculations + right.calculations, single0.calculations);
    }
}

TEST(BiquadFilter, PartsFromItsPartnerWhenOneIsSwitchedOffAndJoinsItAgain) {
    FilterRig rig;
    FixedFilter left(rig, half), right(rig, half, 1);
    right.setPartner(&left);
    right.setLink(true);
    const Sound ones(256, 1.0f);
    const auto cycles = [&](int count) {
        for (int i = 0; i < count; ++i) {
            rig.inputs[0].setSamples(ones);
            rig.inputs[1].setSamples(ones);
            wave::Filter* const both[] = {&left, &right};
            rig.cycle(both, 256);
        }
    };
    cycles(2);
    left.enabled = false;
    cycles(1);
    EXPECT_FALSE(left.getProcessor().isLinked());
    EXPECT_NEAR((*left.getOutput())[255], 0.5f + 0.5f * 255.0f / 960.0f, 1e-3f);
    EXPECT_EQ((*right.getOutput())[255], 0.5f);
    cycles(5);
    EXPECT_EQ(left.getOutput(), rig.inputs[0].getOutput());
    EXPECT_EQ((*right.getOutput())[0], 0.5f);
    left.enabled = true;
    cycles(5);
    EXPECT_TRUE(left.getProcessor().isLinked());
    EXPECT_EQ((*left.getOutput())[255], 0.5f);
}

} // namespace
