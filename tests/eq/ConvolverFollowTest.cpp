// Two convolvers of which one reads the other's kernel, beside two with kernels of their own.
#include "tests/eq/ConvolverTestKernel.h"
#include "wave/Source.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <random>
#include <string>

namespace {

class Feed final : public wave::Source {
public:
    using Source::Source;
    void hold(const wave::BasicBlock<float>& block) noexcept {
        output = &block;
        stamp();
    }
    void process(wave::BasicBlock<float>&, std::int32_t, std::uint32_t) noexcept override {}
};

// Left and right of the pair under test, then those of the one with two kernels, all in one graph.
struct Pairs {
    enum Place { left, right, ownLeft, ownRight };

    Pairs(std::int32_t length, std::int32_t block) : configuration(length, block) {
        configuration.setCrossfadeMilliseconds(1000.0 / static_cast<double>(environment.sampleRate) *
                                               (configuration.getHop() + 0.4));
        configuration.setUpdateDivisor(configuration.getActivePartitions());
        const SparseKernel taps(static_cast<std::size_t>(length), 40);
        for (std::size_t place = 0; place < 4; ++place) {
            kernels[place] = std::make_unique<ConvolverTestKernel>(environment, configuration);
            kernels[place]->taps.resize(static_cast<std::size_t>(length));
            taps.writeTo(kernels[place]->taps);
            convolvers[place] = std::make_unique<Convolver>(environment, *kernels[place]);
            feeds[place] = std::make_unique<Feed>(environment);
            convolvers[place]->input = feeds[place].get();
        }
        follow(true);
    }

    void follow(bool wanted) { convolvers[right]->follow(wanted ? convolvers[left].get() : nullptr); }

    void setGain(float leftGain, float rightGain) {
        for (std::size_t place = 0; place < 4; ++place) {
            kernels[place]->gain = place % 2 == 0 ? leftGain : rightGain;
            kernels[place]->setDirty();
        }
    }

    // Blocks of any size, pulled in any order; `before` each of them.
    void run(std::size_t length, const std::function<void(std::size_t)>& before) {
        const std::array inputs{noise(length, 41), noise(length, 42)};
        for (Samples& output : outputs)
            output.assign(length, 0.0f);
        for (std::size_t done = 0; done < length;) {
            before(done);
            const auto count = static_cast<std::int32_t>(std::min<std::size_t>(1 + random() % 256, length - done));
            std::array<std::size_t, 4> order{left, right, ownLeft, ownRight};
            std::shuffle(order.begin(), order.end(), random);
            std::array<wave::BasicBlock<float>, 2> blocks{wave::BasicBlock<float>(environment),
                                                          wave::BasicBlock<float>(environment)};
            for (std::size_t side = 0; side < 2; ++side)
                std::copy_n(&inputs[side][done], count, blocks[side].data());
            environment.beginCycle();
            for (std::size_t place = 0; place < 4; ++place)
                feeds[place]->hold(blocks[place % 2]);
            for (const std::size_t place : order) {
                const RealtimeScope watched;
                std::copy_n(convolvers[place]->pull(count).data(), count, &outputs[place][done]);
            }
            environment.runCycle(count, false);
            done += static_cast<std::size_t>(count);
        }
    }

    wave::Environment environment;
    Convolver::Configuration configuration;
    std::array<std::unique_ptr<ConvolverTestKernel>, 4> kernels;
    std::array<std::unique_ptr<Convolver>, 4> convolvers;
    std::array<std::unique_ptr<Feed>, 4> feeds;
    std::array<Samples, 4> outputs;
    std::mt19937 random{43};
};

// One level, and two.
constexpr std::array lengths{4096, 32768};

TEST(ConvolverFollow, OneKernelForTwoSoundsAsTwoKernelsDoBitByBit) {
    for (const std::int32_t length : lengths)
        for (const bool dynamic : {false, true}) {
            SCOPED_TRACE(std::to_string(length) + (dynamic ? " dynamic" : ""));
            Pairs pairs(length, 1024);
            for (const auto& kernel : pairs.kernels)
                kernel->dynamic = dynamic;
            const auto hop = static_cast<std::size_t>(pairs.configuration.getHop());
            pairs.run(60 * hop, [&](std::size_t position) {
                if (pairs.random() % 60 == 0)
                    pairs.environment.resetAll();
                // Dragged, with rests.
                const float gain = 0.001f * static_cast<float>(pairs.random() % 1000);
                if (dynamic || position / (5 * hop) % 2 == 0)
                    pairs.setGain(gain, gain);
            });
            EXPECT_EQ(pairs.outputs[Pairs::left], pairs.outputs[Pairs::ownLeft]);
            EXPECT_EQ(pairs.outputs[Pairs::right], pairs.outputs[Pairs::ownRight]);
            EXPECT_EQ(pairs.kernels[Pairs::right]->sequences, 0);
            EXPECT_GT(pairs.kernels[Pairs::left]->sequences, 10);
        }
}

TEST(ConvolverFollow, APairThatPartsAndJoinsWhileNothingMovesFadesAsTwoKernelsDo) {
    for (const std::int32_t length : lengths) {
        SCOPED_TRACE(length);
        Pairs pairs(length, 1024);
        const auto hop = static_cast<std::size_t>(pairs.configuration.getHop());
        std::size_t next = 8 * hop + 123;
        int step = 0;
        pairs.run(60 * hop, [&](std::size_t position) {
            if (position < next)
                return;
            next += 6 * hop + pairs.random() % hop;
            const bool alike = ++step % 2 == 0;
            const float gain = 0.1f * static_cast<float>(step);
            pairs.follow(alike);
            pairs.setGain(gain, alike ? gain : gain - 0.7f);
        });
        EXPECT_GE(step, 7);
        EXPECT_EQ(pairs.outputs[Pairs::left], pairs.outputs[Pairs::ownLeft]);
        EXPECT_EQ(pairs.outputs[Pairs::right], pairs.outputs[Pairs::ownRight]);
    }
}

// The right one's gain stays within 0 to 1; the left one's is far outside whenever they differ.
TEST(ConvolverFollow, APairThatPartsAndJoinsInMotionNeverStepsNorHearsTheOtherOnesKernel) {
    for (const std::int32_t length : lengths)
        for (const bool dynamic : {false, true}) {
            SCOPED_TRACE(std::to_string(length) + (dynamic ? " dynamic" : ""));
            Pairs pairs(length, 1024);
            for (const auto& kernel : pairs.kernels)
                kernel->dynamic = dynamic;
            pairs.setGain(0.5f, 0.5f);
            const auto hop = static_cast<std::size_t>(pairs.configuration.getHop());
            bool alike = true;
            const std::size_t steady = static_cast<std::size_t>(length) + 4 * hop;
            pairs.run(steady + 80 * hop, [&](std::size_t position) {
                if (position < steady / 2)
                    return;
                if (pairs.random() % (3 * hop / 128) == 0) {
                    alike = !alike;
                    pairs.follow(alike);
                }
                const float gain = 0.001f * static_cast<float>(pairs.random() % 1000);
                pairs.setGain(alike ? gain : -5.0f, gain);
            });
            const SparseKernel taps(static_cast<std::size_t>(length), 40);
            const Samples input = noise(steady + 80 * hop, 42);
            double gain = -1.0;
            std::size_t last = 0;
            int moves = 0;
            for (std::size_t time = steady; time < input.size(); ++time) {
                const double full = taps.at(input, time, 1024);
                if (std::fabs(full) < 0.5)
                    continue;
                const double now = static_cast<double>(pairs.outputs[Pairs::right][time]) / full;
                ASSERT_GT(now, -1e-4) << time;
                ASSERT_LT(now, 1.0001) << time;
                if (last > 0) {
                    ASSERT_LT(std::fabs(now - gain), static_cast<double>(time - last) / static_cast<double>(hop) + 4e-5)
                        << time;
                    moves += std::fabs(now - gain) > 1e-4 ? 1 : 0;
                }
                gain = now;
                last = time;
            }
            EXPECT_GT(moves, static_cast<int>(hop));
        }
}

} // namespace
