// Drives filters of one or two channels through whole cycles and collects what comes out.
// Threads: those of the test.
#pragma once

#include "eq/BiquadFilter.h"
#include "wave/Environment.h"
#include "wave/Input.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <numbers>
#include <span>
#include <vector>

using Sound = std::vector<float>;

inline Sound sine(double hz, std::size_t count, double sampleRate = 48000.0, double level = 0.5) {
    Sound sound(count);
    for (std::size_t i = 0; i < count; ++i)
        sound[i] =
            static_cast<float>(level * std::sin(2.0 * std::numbers::pi * hz * static_cast<double>(i) / sampleRate));
    return sound;
}

inline float largestDifference(const Sound& a, const Sound& b) {
    float largest = a.size() == b.size() ? 0.0f : INFINITY;
    for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i)
        largest = std::max(largest, std::fabs(a[i] - b[i]));
    return largest;
}

// A click is a jump of the slope: it stands out of the second difference whatever the sound is.
inline float largestSecondDifference(std::span<const float> sound) {
    float largest = 0.0f;
    for (std::size_t i = 2; i < sound.size(); ++i)
        largest = std::max(largest, std::fabs(sound[i] - 2.0f * sound[i - 1] + sound[i - 2]));
    return largest;
}

// The environment and its two inputs. Filters are made with `environment` and read `inputs`.
struct FilterRig {
    explicit FilterRig(float sampleRate = 48000.0f) : inputs{wave::Input(environment), wave::Input(environment)} {
        environment.setSampleRate(sampleRate);
    }

    // A cycle of `count` samples of each input, through the filters in the given order.
    void cycle(std::span<wave::Filter* const> filters, std::int32_t count) {
        environment.beginCycle();
        for (wave::Filter* const filter : filters)
            filter->pull(count);
        environment.runCycle(count, false);
    }

    // The whole sound through a filter on input 0, before each cycle `between` with the place in the sound.
    Sound run(BiquadFilter& filter, const Sound& sound, std::int32_t block = 256,
              const std::function<void(std::size_t)>& between = nullptr) {
        inputs[0].setSamples(sound);
        Sound out;
        while (out.size() < sound.size()) {
            if (between)
                between(out.size());
            const auto count =
                static_cast<std::int32_t>(std::min(static_cast<std::size_t>(block), sound.size() - out.size()));
            wave::Filter* const filters[] = {&filter};
            cycle(filters, count);
            const float* const result = filter.getOutput()->data();
            out.insert(out.end(), result, result + count);
        }
        return out;
    }

    wave::Environment environment;
    wave::Input inputs[2];
};

// A cascade with given rows.
class FixedFilter final : public BiquadFilter {
public:
    FixedFilter(FilterRig& rig, std::vector<double> wanted, int channel = 0)
        : BiquadFilter(rig.environment, wanted.size() / sectionLength, 1), row(std::move(wanted)) {
        input = &rig.inputs[channel];
    }

    void calculateCoefficients(std::int32_t count, BiquadProcessor& wanted) noexcept REALTIME override {
        ++calculations;
        wanted.setSectionCount(row.size() / sectionLength);
        wanted.enqueue(count, row.data(), 1.0f);
    }

    using BiquadFilter::processor;
    std::vector<double> row;
    int calculations = 0;
};
