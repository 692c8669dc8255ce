// A kernel whose samples are told by the test, and what its convolution must give.
#pragma once

#include "base/Realtime.h"
#include "eq/Convolver.h"
#include "eq/ConvolverConfiguration.h"
#include "eq/ConvolverKernel.h"
#include "wave/Environment.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <random>
#include <vector>

using Samples = std::vector<float>;

inline Samples noise(std::size_t count, unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> range(-1.0f, 1.0f);
    Samples samples(count);
    for (float& sample : samples)
        sample = range(random);
    return samples;
}

class ConvolverTestKernel final : public Convolver::Kernel {
public:
    ConvolverTestKernel(wave::Environment& owner, const Convolver::Configuration& sizes) : Kernel(owner, sizes) {
        add(std::make_unique<CopyTask>(*this));
    }

    Samples taps;
    float gain = 1.0f;
    std::function<void()> started = [] {};
    int sequences = 0;

private:
    class CopyTask final : public Convolver::UpdateTask {
    public:
        explicit CopyTask(ConvolverTestKernel& kernel) : owner(kernel) {}

        void prepare() noexcept override { units = static_cast<std::int32_t>(owner.taps.size()); }
        void begin() noexcept override {
            trustedRealtime([this] { owner.started(); });
            ++owner.sequences;
            gain = owner.gain;
            target->length = units;
        }
        void run(std::int32_t position, std::int32_t count) noexcept override {
            for (std::int32_t index = position; index < position + count; ++index)
                target->samples[index] = gain * owner.taps[static_cast<std::size_t>(index)];
        }

    private:
        ConvolverTestKernel& owner;
        float gain = 1.0f;
    };
};

// A convolver in a graph of its own.
class ConvolverTestBench {
public:
    ConvolverTestBench(std::int32_t length, std::int32_t minimumBlock, double crossfadeMs = 20.0, int divisor = 4)
        : configuration(length, minimumBlock), in(environment), out(environment) {
        configuration.setCrossfadeMilliseconds(crossfadeMs);
        configuration.setUpdateDivisor(divisor);
        kernel = std::make_unique<ConvolverTestKernel>(environment, configuration);
        convolver = std::make_unique<Convolver>(environment, *kernel);
        kernel->taps.assign(static_cast<std::size_t>(length), 0.0f);
    }

    // Crossfade and pace of a linear-phase kernel: one hop each.
    void pace() {
        configuration.setCrossfadeMilliseconds(1000.0 / static_cast<double>(environment.sampleRate) *
                                               (configuration.getHop() + 0.4));
        configuration.setUpdateDivisor(configuration.getPartitionCount());
    }

    Samples run(
        const Samples& input, const std::function<std::int32_t()>& blockSize,
        const std::function<void(std::size_t)>& before = [](std::size_t) {}) {
        Samples output(input.size());
        for (std::size_t done = 0; done < input.size();) {
            before(done);
            const auto count =
                static_cast<std::int32_t>(std::min(static_cast<std::size_t>(blockSize()), input.size() - done));
            std::copy_n(&input[done], count, in.data());
            environment.beginCycle();
            {
                const RealtimeScope watched;
                convolver->filter(in, out, count, wave::Producer::modePulled);
            }
            environment.runCycle(count, false);
            std::copy_n(out.data(), count, &output[done]);
            done += static_cast<std::size_t>(count);
        }
        return output;
    }

    // Until the kernel that was last asked for is heard, fade and all.
    void settle() {
        const auto length =
            static_cast<std::size_t>(configuration.getKernelLength() + 8 * configuration.getHop() + 2000);
        run(Samples(length), [] { return 256; });
    }

    wave::Environment environment;
    Convolver::Configuration configuration;
    std::unique_ptr<ConvolverTestKernel> kernel;
    std::unique_ptr<Convolver> convolver;
    wave::BasicBlock<float> in;
    wave::BasicBlock<float> out;
};

// One sample of the convolution by its definition; the input is silent before its begin.
inline double convolvedAt(const Samples& input, const Samples& taps, std::size_t time, std::size_t latency) {
    double sum = 0.0;
    for (std::size_t tap = 0; tap < taps.size() && tap + latency <= time; ++tap)
        sum += static_cast<double>(taps[tap]) * static_cast<double>(input[time - latency - tap]);
    return sum;
}

// The same for a kernel with few taps, at all times.
struct SparseKernel {
    std::vector<std::pair<std::size_t, float>> taps;

    SparseKernel(std::size_t length, unsigned seed) {
        std::mt19937 random(seed);
        for (int count = 0; count < 12; ++count)
            taps.emplace_back(random() % length, 0.1f + 0.1f * static_cast<float>(random() % 8));
        taps.emplace_back(length - 1, 0.5f);
        taps.emplace_back(0, 0.5f);
    }
    void writeTo(Samples& all) const {
        std::fill(all.begin(), all.end(), 0.0f);
        for (const auto& [place, value] : taps)
            all[place] += value;
    }
    double at(const Samples& input, std::size_t time, std::size_t latency) const {
        double sum = 0.0;
        for (const auto& [place, value] : taps)
            if (place + latency <= time)
                sum += static_cast<double>(value) * static_cast<double>(input[time - latency - place]);
        return sum;
    }
};
