#include "eq/BiquadProcessor.h"

#include "tests/eq/FilterRig.h"

#include <gtest/gtest.h>

#include <numeric>

namespace {

constexpr double half[] = {0.5, 0.0, 0.0, 0.0, 0.0};

std::uint32_t sum(std::span<const std::uint32_t> lengths) {
    return std::accumulate(lengths.begin(), lengths.end(), 0u);
}

TEST(CoefficientQueue, JoinsEqualRowsAndNeverOverflows) {
    RowQueue queue(3, 5);
    const double row[] = {1.0, -0.0, 3.0, 4.0, 5.0};
    double other[] = {1.0, 0.0, 3.0, 4.0, 5.0}; // differs by one bit
    queue.enqueue(10, row);
    queue.enqueue(20, row);
    ASSERT_EQ(queue.runLengths().size(), 1u);
    queue.enqueue(30, other);
    ASSERT_EQ(queue.runLengths().size(), 2u);
    for (int i = 1; i <= 4; ++i) {
        other[0] = 10.0 * i;
        queue.enqueue(i, other);
    }
    ASSERT_EQ(queue.runLengths().size(), 3u);
    EXPECT_EQ(sum(queue.runLengths()), 70u);
    EXPECT_EQ(queue.row(2)[0], 40.0); // the last row won
    queue.restart();
    EXPECT_TRUE(queue.runLengths().empty());
    EXPECT_EQ(queue.front()[0], 40.0);
}

struct Blocks {
    explicit Blocks(wave::Environment& environment) : in(environment), out(environment) {
        for (int i = 0; i < 64; ++i)
            in[i] = static_cast<float>(i);
    }
    wave::BasicBlock<float> in, out;
};

TEST(BiquadProcessor, KeepsWhatPassedInTheBlockBeforeItFiltered) {
    wave::Environment environment;
    BiquadProcessor processor(environment, 1, 1);
    Blocks blocks(environment);
    const std::vector<float> dryGain(64, 2.0f);
    for (const bool withGain : {false, true}) {
        processor.inputGain = withGain ? dryGain.data() : nullptr;
        processor.beginBlock(blocks.in, blocks.out, 64);
        processor.enqueue(16, half, 0.0f);
        processor.process(16);
        EXPECT_EQ(&processor.getResult(), withGain ? &blocks.out : &blocks.in);
        processor.enqueue(16, half, 1.0f);
        processor.process(16);
        processor.enqueue(16, half, 0.0f);
        processor.process(16);
        processor.enqueue(16, half, 0.5f); // half of the filtered, half of the dry signal
        processor.process(16);
        ASSERT_EQ(&processor.getResult(), &blocks.out);
        const float dry = withGain ? 2.0f : 1.0f;
        for (int i = 0; i < 64; ++i) {
            const auto x = static_cast<float>(i);
            const float factor = i / 16 % 2 == 0 ? dry : i < 32 ? 0.5f : 0.5f * (dry + 0.5f);
            ASSERT_FLOAT_EQ(blocks.out[i], x * factor) << i;
        }
    }
}

TEST(BiquadProcessor, AFormChangeIsExactForItsOwnRowsAndLeavesPendingResetsAlone) {
    // A bell in both forms, at 0.3 radians per sample.
    const double g = std::tan(0.15), damping = 0.3 + g, m1 = 1.1;
    const double d = 1.0 / (damping * g + 1.0);
    const double stateVariable[] = {g, damping, 1.0, m1, 1.0};
    const double direct[] = {(g * g + g * m1 + 1.0) * d, 2.0 * (g * g - 1.0) * d, (g * g - g * m1 + 1.0) * d,
                             2.0 * (g * g - 1.0) * d, (g * g - (damping - g) * g + 1.0) * d};
    const double start[] = {0.3, -0.2, 0.7, 0.4};
    double memory[4];
    std::copy(start, start + 4, memory);
    convertSectionMemory(SectionForm::direct, direct, memory);
    EXPECT_GT(std::fabs(memory[2] - start[2]), 1e-3);
    convertSectionMemory(SectionForm::stateVariable, stateVariable, memory);
    for (int i = 0; i < 4; ++i)
        EXPECT_NEAR(memory[i], start[i], 1e-12) << i;

    wave::Environment environment;
    Blocks blocks(environment);
    BiquadProcessor processor(environment, 1, 1);
    processor.resetMode = BiquadProcessor::ResetMode::resetFollowInput;
    const auto block = [&](const double* row) {
        processor.beginBlock(blocks.in, blocks.out, 64);
        processor.enqueue(64, row, 1.0f);
        processor.process(64);
        return blocks.out[0];
    };
    block(direct);
    processor.requestReset();
    processor.setForm(SectionForm::stateVariable, direct);
    blocks.in[0] = 8.0f;
    EXPECT_FLOAT_EQ(block(stateVariable), static_cast<float>(8.0 * direct[0])); // from cleared memory
}

} // namespace
