// Sources whose content a test writes, and a clock that it drives.
#pragma once

#include "platform/Clock.h"
#include "wave/AudioSource.h"
#include "wave/SpectrumSource.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <numbers>
#include <vector>

inline std::uint32_t testTicks = 0;

inline std::uint32_t readTestTicks() noexcept {
    return testTicks;
}

inline std::unique_ptr<IntervalTimer> testTimer() {
    return std::make_unique<TickTimer>(readTestTicks);
}

inline float toDb(float magnitude) {
    return 20.0f * std::log10(std::max(magnitude, 1e-20f));
}

// Whole blocks of a signal; a look takes them all.
class SignalSource final : public AudioSource {
public:
    using Signal = std::function<double(std::size_t channel, std::size_t sample)>;

    explicit SignalSource(Signal wanted, std::size_t channelsWanted = 1, std::size_t samplesOfBlock = 256)
        : signal(std::move(wanted)), channels(channelsWanted), size(samplesOfBlock) {}

    void deliver(std::size_t blocks) { // to the next look
        for (; blocks > 0; --blocks, position += size) {
            auto& block = delivered.emplace_back(channels);
            for (std::size_t channel = 0; channel < channels; ++channel)
                for (std::size_t i = 0; i < size; ++i)
                    block[channel].push_back(static_cast<float>(signal(channel, position + i)));
        }
    }

    void lock() override { ++lockCount; }
    void unlock() override {
        if (--lockCount == 0)
            delivered.clear();
    }
    std::size_t blockSize() const override { return size; }
    std::span<const float> blockData(std::size_t block, std::size_t channel) const override {
        return delivered[block][channel];
    }
    std::size_t blockCount() const override { return delivered.size(); }
    std::size_t channelCount() const override { return channels; }

    Signal signal;

private:
    std::size_t channels;
    std::size_t size;
    std::size_t position = 0;
    std::vector<std::vector<std::vector<float>>> delivered;
    int lockCount = 0;
};

inline SignalSource::Signal sine(double cyclesPerSample, double amplitude = 1.0) {
    return [=](std::size_t, std::size_t sample) {
        return amplitude * std::sin(2.0 * std::numbers::pi * cyclesPerSample * static_cast<double>(sample));
    };
}

class FixedSpectrum final : public SpectrumSource {
public:
    explicit FixedSpectrum(std::size_t fftSize) { resize(fftSize); }

    void resize(std::size_t fftSize) { magnitudes.assign(fftSize / 2 + 1, 0.0f); }
    void show(float magnitude) { // in all bins
        magnitudes.assign(magnitudes.size(), magnitude);
        ++frames;
    }

    void lock() override {}
    void unlock() override {}
    std::span<const float> data() const override { return magnitudes; }
    std::size_t size() const override { return (magnitudes.size() - 1) * 2; }
    std::uint32_t frameCounter() const override { return frames; }

    std::vector<float> magnitudes;
    std::uint32_t frames = 0;
};
