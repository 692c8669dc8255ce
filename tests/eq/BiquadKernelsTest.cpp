#include "eq/BiquadKernels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <random>
#include <vector>

namespace {

constexpr float guard = 12345.0f;
constexpr std::size_t margin = 8;

struct Case {
    bool direct;
    std::size_t channels;
    std::size_t sections;
    std::vector<std::uint32_t> runs;
    bool inPlace;
};

// All that a pass reads and writes, with guard words around it, filled from the same seed for each kernel.
struct Bed {
    explicit Bed(const Case& wanted) : test(wanted) {
        std::mt19937 random(7);
        std::uniform_real_distribution<double> unit(-1.0, 1.0);
        for (const std::uint32_t run : test.runs)
            length += run;
        const std::size_t rowLength = test.sections * BiquadSection::rowLength;
        for (std::size_t r = 0; r < test.runs.size(); ++r)
            for (std::size_t s = 0; s < test.sections; ++s)
                addRow(0.02 + 0.12 * static_cast<double>(s) + 0.01 * static_cast<double>(r));
        memory.assign(test.sections * 2 * BiquadSection::memoryLength + 2 * margin, static_cast<double>(guard));
        for (std::size_t i = margin; i + margin < memory.size(); ++i)
            memory[i] = 0.1 * unit(random);
        for (std::size_t s = 0; s < test.sections; ++s) {
            double* const of = memory.data() + margin + s * 2 * BiquadSection::memoryLength;
            sections.push_back({rows.data() + s * BiquadSection::rowLength,
                                {of, test.channels > 1 ? of + BiquadSection::memoryLength : nullptr}});
        }
        for (std::size_t c = 0; c < test.channels; ++c) {
            in[c].assign(length + 2 * margin + 1, guard);
            out[c] = in[c];
            for (std::size_t i = 0; i < length; ++i)
                in[c][margin + 1 + i] = static_cast<float>(unit(random)); // off alignment
        }
        pass = {.sections = sections.data(),
                .sectionCount = test.sections,
                .runLengths = test.runs.data(),
                .runCount = test.runs.size(),
                .rowStride = rowLength,
                .input = {},
                .output = {}};
        for (std::size_t c = 0; c < test.channels; ++c) {
            pass.input[c] = in[c].data() + margin + 1;
            pass.output[c] = (test.inPlace ? in[c] : out[c]).data() + margin + 1;
        }
    }

    void addRow(double w) {
        if (test.direct) { // a bell of 1 dB
            const double alpha = std::sin(w), gain = 1.06;
            const double a0 = 1.0 + alpha / gain;
            rows.insert(rows.end(), {(1.0 + alpha * gain) / a0, -2.0 * std::cos(w) / a0, (1.0 - alpha * gain) / a0,
                                     -2.0 * std::cos(w) / a0, (1.0 - alpha / gain) / a0});
        } else {
            const double g = std::tan(w / 2.0);
            rows.insert(rows.end(), {g, 1.2 + g, 1.02, 1.25, 0.98});
        }
    }

    void run(const BiquadKernels& kernels) {
        (test.direct ? kernels.direct : kernels.stateVariable)[test.channels - 1](pass);
    }

    bool guardsHold() const {
        const auto whole = [](auto begin, auto end, auto value) {
            return std::all_of(begin, end, [=](auto each) { return each == value; });
        };
        bool hold = whole(memory.begin(), memory.begin() + margin, static_cast<double>(guard)) &&
                    whole(memory.end() - margin, memory.end(), static_cast<double>(guard));
        for (std::size_t c = 0; c < test.channels; ++c)
            for (const std::vector<float>* const each : {&in[c], &out[c]})
                hold = hold && whole(each->begin(), each->begin() + margin + 1, guard) &&
                       whole(each->end() - margin, each->end(), guard);
        return hold;
    }

    Case test;
    std::size_t length = 0;
    std::vector<double> rows, memory;
    std::vector<BiquadSection> sections;
    std::array<std::vector<float>, 2> in, out;
    BiquadPass pass;
};

// The wide kernels round doubles elsewhere, and so a sample that lies between two floats may fall to the other one;
// what follows hears that as noise of the float's last bit. The memory of section 0, whose input is the same, is exact.
void expectSame(const Case& test) {
    SCOPED_TRACE(testing::Message() << (test.direct ? "direct" : "state variable") << ", " << test.channels
                                    << " channels, " << test.sections << " sections, " << test.runs.size()
                                    << " runs from " << test.runs.front() << (test.inPlace ? ", in place" : ""));
    Bed plain(test), wide(test);
    plain.run(plainBiquadKernels());
    wide.run(*wideBiquadKernels());
    ASSERT_TRUE(plain.guardsHold());
    ASSERT_TRUE(wide.guardsHold());
    std::size_t equal = 0;
    for (std::size_t c = 0; c < test.channels; ++c)
        for (std::size_t i = 0; i < plain.length; ++i) {
            const float a = plain.pass.output[c][i], b = wide.pass.output[c][i];
            ASSERT_NEAR(a, b, 5e-7f) << "sample " << i;
            equal += a == b ? 1 : 0;
        }
    EXPECT_GE(equal, plain.length * test.channels * 98 / 100);
    for (std::size_t i = margin; i + margin < plain.memory.size(); ++i)
        ASSERT_NEAR(plain.memory[i], wide.memory[i], i - margin < 2 * BiquadSection::memoryLength ? 1e-12 : 2e-6)
            << "memory " << i - margin;
}

TEST(BiquadKernels, WideOnesEqualThePlainOnesAtEveryLengthAndCountOfSections) {
    if (wideBiquadKernels() == nullptr)
        GTEST_SKIP() << "this processor has no wide kernels";
    std::vector<std::uint32_t> lengths{31, 47, 48, 49, 50, 64, 511};
    for (std::uint32_t i = 0; i <= 17; ++i)
        lengths.push_back(i);
    for (const bool direct : {true, false})
        for (const std::size_t channels : {1u, 2u})
            for (const std::size_t sections : {1u, 2u, 3u, 4u, 5u, 6u, 7u, 8u, 11u, 24u})
                for (const bool inPlace : {true, false}) {
                    for (const std::uint32_t length : lengths)
                        expectSame({direct, channels, sections, {length}, inPlace});
                    expectSame({direct, channels, sections, {64, 100, 49}, inPlace});
                    expectSame({direct, channels, sections, {1, 1, 3, 100}, inPlace});
                }
}

} // namespace
