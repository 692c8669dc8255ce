#include "wave/Mixer.h"

#include "tests/wave/GraphTestObjects.h"
#include "wave/VolumeFilter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

namespace {

std::unique_ptr<TestSource> noiseSource(wave::Environment& environment, std::uint32_t seed) {
    return std::make_unique<TestSource>(environment, [seed](std::uint64_t position) { return noise(position, seed); });
}

TEST(Mixer, EveryOperationAndNumberOfInputsGivesWhatItsFormulaSays) {
    using Operation = Mixer::Operation;
    for (const Operation operation : {Operation::sum, Operation::largestMagnitude})
        for (std::uint32_t inputs = 1; inputs <= 18; ++inputs) // past the limit of the fast path
            for (const bool moving : {false, true}) {
                wave::Environment environment;
                Mixer mixer(environment, 0, operation);
                std::vector<std::unique_ptr<TestSource>> sources;
                TestSource ramp(environment,
                                [](std::uint64_t position) { return static_cast<float>(position % 32) / 32.0f; });
                std::vector<float> weights;
                for (std::uint32_t input = 0; input < inputs; ++input) {
                    sources.push_back(noiseSource(environment, input));
                    weights.push_back(input == 0 ? 1.0f : static_cast<float>(input % 5) * 0.25f);
                    mixer.addInput(sources.back().get(), weights.back());
                }
                if (moving)
                    mixer.weight(inputs / 2).connect(&ramp);
                const std::vector<float> mixed = render(environment, mixer, 100, 37);
                for (std::uint64_t position = 0; position < mixed.size(); ++position) {
                    float wanted = 0.0f;
                    for (std::uint32_t input = 0; input < inputs; ++input) {
                        const float weight =
                            moving && input == inputs / 2 ? static_cast<float>(position % 32) / 32.0f : weights[input];
                        const float each = noise(position, input);
                        wanted = operation == Operation::sum ? wanted + each * weight
                                                             : std::max(wanted, std::fabs(each) * weight);
                    }
                    ASSERT_NEAR(mixed[position], wanted, 2e-6f) << inputs << ", " << position;
                }
            }
}

TEST(Mixer, WhatHasNoWeightIsNotMadeInTheFastPath) {
    wave::Environment environment;
    Mixer mixer(environment);
    const auto a = noiseSource(environment, 1);
    const auto b = noiseSource(environment, 2);
    mixer.addInput(a.get(), 0.0f);
    mixer.addInput(b.get(), 0.0f);
    runCycle(environment, 100, {&mixer});
    EXPECT_EQ(a->runs + b->runs, 0);
    EXPECT_EQ(mixer.getOutput()->isConstant, 1u);
    EXPECT_EQ(mixer.firstValue(), 0.0f);
    mixer.weight(1).assign(1.0f); // a fade: heard from its first sample on
    runCycle(environment, 100, {&mixer});
    EXPECT_EQ(b->runs, 1);
    EXPECT_EQ(mixer.getOutput()->isConstant, 0u);
    EXPECT_EQ(a->runs, 0);
    mixer.setSource(0, nullptr); // off the fast path
    EXPECT_EQ(render(environment, mixer, 3, 3).size(), 3u);
    EXPECT_EQ(b->runs, 2);
    mixer.setSource(1, nullptr);
    runCycle(environment, 100, {&mixer});
    EXPECT_EQ(mixer.getOutput(), &environment.zeroBlock);
}

TEST(Mixer, ConstantInputsMakeAConstantBlock) {
    for (const Mixer::Operation operation : {Mixer::Operation::sum, Mixer::Operation::largestMagnitude}) {
        wave::Environment environment;
        Mixer mixer(environment, 0, operation);
        TestSource two(environment, [](std::uint64_t) { return -2.0f; });
        TestSource three(environment, [](std::uint64_t) { return 3.0f; });
        two.constant = three.constant = true;
        mixer.addInput(&two, 1.0f);
        mixer.addInput(&three, 0.5f);
        runCycle(environment, 13, {&mixer});
        EXPECT_EQ(mixer.getOutput()->isConstant, 1u);
        const float wanted = operation == Mixer::Operation::sum ? -0.5f : 2.0f;
        EXPECT_EQ((*mixer.getOutput())[0], wanted);
        EXPECT_EQ((*mixer.getOutput())[12], wanted);
        three.constant = false;
        runCycle(environment, 13, {&mixer});
        EXPECT_EQ(mixer.getOutput()->isConstant, 0u);
    }
}

TEST(VolumeFilter, TouchesNoSampleAtGainZeroAndOneAndMultipliesOtherwise) {
    wave::Environment environment;
    const auto source = noiseSource(environment, 5);
    VolumeFilter filter(environment);
    filter.input = source.get();
    runCycle(environment, 50, {&filter});
    EXPECT_EQ(filter.getOutput(), source->getOutput());
    filter.gain.parameter().setValue(0.5f, 0.0f);
    std::uint64_t start = environment.position;
    const std::vector<float> sound = render(environment, filter, 100, 33);
    for (std::uint64_t index = 0; index < sound.size(); ++index)
        ASSERT_EQ(sound[index], noise(start + index, 5) * 0.5f);
    filter.gain.parameter().setValue(0.0f, 0.0f);
    runCycle(environment, 50, {&filter});
    EXPECT_EQ(filter.getOutput(), &environment.zeroBlock);
    filter.gain.parameter().setValue(1.0f, 10.0f);
    start = environment.position;
    const std::vector<float> fading = render(environment, filter, 441, 50);
    for (std::uint64_t index = 0; index < fading.size(); ++index)
        ASSERT_NEAR(fading[index], noise(start + index, 5) * static_cast<float>(index) / 441.0f, 1e-6f);
    source->constant = true;
    filter.gain.parameter().setValue(0.5f, 0.0f);
    runCycle(environment, 50, {&filter});
    EXPECT_EQ(filter.getOutput()->isConstant, 1u);
}

} // namespace
