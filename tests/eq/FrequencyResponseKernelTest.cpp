#include "eq/FrequencyResponseKernel.h"
#include "eq/DiscreteFrequencyResponseSource.h"
#include "tests/eq/ConvolverTestKernel.h"

#include <gtest/gtest.h>

#include <complex>
#include <functional>
#include <numbers>

namespace {

// One at every frequency.
class FlatResponse final : public DiscreteFrequencyResponseSource {
public:
    explicit FlatResponse(std::int32_t length)
        : DiscreteFrequencyResponseSource(grid), grid(false, 0.0f, std::numbers::pi_v<float>, length / 2) {}

    std::complex<float> response(std::int32_t) noexcept override { return 1.0f; }
    void responses(std::int32_t start, std::span<std::complex<float>> out) noexcept override {
        EXPECT_TRUE(start == 0 || start == next) << "bins come in order";
        for (std::complex<float>& value : out)
            value = response(start++);
        next = start;
        EXPECT_LE(next, grid.count.get() + 1);
    }
    float squaredMagnitude(std::int32_t index) noexcept override { return std::norm(response(index)); }
    void squaredMagnitudes(std::int32_t, std::span<float>) noexcept override {}

    std::int32_t next = 0;

private:
    Mapping grid;
};

struct Rig {
    Rig(ProcessingMode mode, std::int32_t length, std::int32_t block)
        : configuration(FrequencyResponseKernel::makeConfiguration(mode, length, block, 48000.0))
        , source(length)
        , kernel(environment, *configuration, source)
        , convolver(environment, kernel)
        , in(environment)
        , out(environment) {
        environment.setSampleRate(48000.0f);
    }

    Samples run(
        const Samples& input, const std::function<void()>& after = [] {}) {
        Samples output(input.size());
        for (std::size_t done = 0; done < input.size(); done += 64) {
            std::copy_n(&input[done], 64, in.data());
            environment.beginCycle();
            {
                const RealtimeScope watched;
                convolver.filter(in, out, 64, wave::Producer::modePulled);
            }
            environment.runCycle(64, false);
            std::copy_n(out.data(), 64, &output[done]);
            after();
        }
        return output;
    }

    wave::Environment environment;
    std::unique_ptr<Convolver::Configuration> configuration;
    FlatResponse source;
    FrequencyResponseKernel kernel;
    Convolver convolver;
    wave::BasicBlock<float> in;
    wave::BasicBlock<float> out;
};

TEST(FrequencyResponseKernel, DearBinsAreReadOverTheirShareOfThePeriod) {
    Rig rig(ProcessingMode::linearPhase, 8192, 1024);
    rig.run(Samples(16384));
    rig.kernel.setEvaluationWeight(2000); // far more than all the rest of the work
    rig.kernel.setDirty();
    std::int32_t before = rig.source.next = 0;
    std::int32_t most = 0;
    rig.run(Samples(2048), [&] {
        most = std::max(most, rig.source.next - before);
        before = rig.source.next;
    });
    EXPECT_EQ(rig.source.next, 4097);
    EXPECT_LT(most, 4097 * 64 / 512 * 11 / 10); // one hop, blocks of 64
}

TEST(FrequencyResponseKernel, TheConvolverIsAtRestWhenTheLastSampleOfTheKernelIsOut) {
    Rig rig(ProcessingMode::linearPhase, 4096, 1024);
    rig.run(Samples(12 * 1024)); // the kernel is there
    rig.environment.resetAll();
    Samples input(64);
    input[0] = 1.0f;
    rig.run(input);
    rig.run(Samples(2 * 4096));
    EXPECT_TRUE(rig.environment.allAtRest());
    rig.run(input);
    EXPECT_FALSE(rig.environment.allAtRest());
    rig.run(Samples(4096 + 1024 - 64));
    EXPECT_FALSE(rig.environment.allAtRest());
    rig.run(Samples(64));
    EXPECT_TRUE(rig.environment.allAtRest());
}

} // namespace
