#include "eq/FrequencyResponseKernel.h"
#include "eq/DiscreteFrequencyResponseSource.h"
#include "tests/eq/ConvolverTestKernel.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <functional>
#include <numbers>

namespace {

// A response told by the test; the frequency is in radians per sample.
class ToldResponse final : public DiscreteFrequencyResponseSource {
public:
    explicit ToldResponse(std::int32_t length)
        : DiscreteFrequencyResponseSource(grid), grid(false, 0.0f, std::numbers::pi_v<float>, length / 2) {}

    std::complex<float> response(std::int32_t index) noexcept override {
        return law(std::numbers::pi * index / grid.count.get());
    }
    void responses(std::int32_t start, std::span<std::complex<float>> out) noexcept override {
        EXPECT_TRUE(start == 0 || start == next) << "bins come in order";
        for (std::complex<float>& value : out)
            value = response(start++);
        next = start;
        EXPECT_LE(next, grid.count.get() + 1);
    }
    float squaredMagnitude(std::int32_t index) noexcept override { return std::norm(response(index)); }
    void squaredMagnitudes(std::int32_t, std::span<float>) noexcept override {}

    std::function<std::complex<float>(double)> law = [](double) { return 1.0f; };
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

    // From a stream that begins anew, with the kernel already there.
    Samples impulseResponse() {
        run(Samples(static_cast<std::size_t>(configuration->getHop()) * 12));
        environment.resetAll();
        Samples input(static_cast<std::size_t>(2 * configuration->getKernelLength()));
        input[0] = 1.0f;
        return run(input);
    }

    wave::Environment environment;
    std::unique_ptr<Convolver::Configuration> configuration;
    ToldResponse source;
    FrequencyResponseKernel kernel;
    Convolver convolver;
    wave::BasicBlock<float> in;
    wave::BasicBlock<float> out;
};

std::complex<double> spectrumAt(const Samples& samples, double frequency) {
    std::complex<double> sum;
    for (std::size_t time = 0; time < samples.size(); ++time)
        sum += static_cast<double>(samples[time]) * std::polar(1.0, -frequency * static_cast<double>(time));
    return sum;
}

double decibels(double gain) {
    return 20.0 * std::log10(gain);
}

TEST(FrequencyResponseKernel, AFlatResponseOnlyDelaysAndByWhatTheSizesTell) {
    for (const std::int32_t length : {512, 4096, 32768}) {
        const bool natural = length == 512;
        Rig rig(natural ? ProcessingMode::naturalPhase : ProcessingMode::linearPhase, length, natural ? 64 : 1024);
        const Samples heard = rig.impulseResponse();
        const auto delay = static_cast<std::size_t>(length / 2 + rig.convolver.getLatency());
        for (std::size_t time = 0; time < heard.size(); ++time)
            ASSERT_NEAR(heard[time], time == delay ? 1.0f : 0.0f, 5e-7f) << length << ' ' << time;
    }
}

TEST(FrequencyResponseKernel, ARealResponseBecomesASymmetricKernelWithItsMagnitude) {
    Rig rig(ProcessingMode::linearPhase, 8192, 1024);
    // A bell of +12 dB at a tenth of the sample rate, and a slope.
    const auto law = [](double w) {
        return (1.0 + 3.0 * std::exp(-60.0 * (w - 0.63) * (w - 0.63))) * std::exp(-0.3 * w);
    };
    rig.source.law = [&](double w) { return static_cast<float>(law(w)); };
    const Samples heard = rig.impulseResponse();
    const std::size_t middle = 4096 + 1024;
    for (std::size_t offset = 1; offset < 4096; ++offset)
        ASSERT_NEAR(heard[middle - offset], heard[middle + offset], 1e-6f) << offset;
    for (double w = 0.05; w < 3.1; w += 0.05) {
        const std::complex<double> got = spectrumAt(heard, w) * std::polar(1.0, w * static_cast<double>(middle));
        EXPECT_NEAR(decibels(std::abs(got)), decibels(law(w)), 0.01) << w;
        EXPECT_LT(std::fabs(std::arg(got)) * 180.0 / std::numbers::pi, 0.01) << w;
    }
}

TEST(FrequencyResponseKernel, APhaseThatFallsIsADelay) {
    Rig rig(ProcessingMode::naturalPhase, 512, 64);
    rig.source.law = [](double w) { return std::complex<float>(std::polar(1.0, -5.0 * w)); };
    const Samples heard = rig.impulseResponse();
    EXPECT_NEAR(heard[256 + 64 + 5], 1.0f, 0.002f); // the window takes a little off beside the middle
    EXPECT_NEAR(heard[256 + 64 - 5], 0.0f, 0.002f);
}

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
    rig.impulseResponse(); // ends 4096 samples behind the impulse
    EXPECT_TRUE(rig.environment.allAtRest());
    Samples input(64);
    input[0] = 1.0f;
    rig.run(input);
    EXPECT_FALSE(rig.environment.allAtRest());
    rig.run(Samples(4096 + 1024 - 64));
    EXPECT_FALSE(rig.environment.allAtRest());
    rig.run(Samples(64));
    EXPECT_TRUE(rig.environment.allAtRest());
}

} // namespace
