// Finds the prominent peaks of a curve.
// Threads: those of the object.
#pragma once

#include "base/Property.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

class SpectrumPeakFinder {
public:
    struct Peak {
        std::size_t index;
        float prominence; // how far the curve stands above half of its mean close by, one column behind the peak
    };

    Property<std::int32_t> maxPeaks{nullptr, 8};
    Property<std::int32_t> windowSize{nullptr, 1}; // columns that two peaks are apart at least, and of the mean
    Property<std::int32_t> firstIndex{nullptr, 0};
    Property<float> threshold{nullptr, 0.0f}; // a curve below it has no peaks
    Property<bool> absoluteValues{nullptr, false};

    void setInput(std::span<const float> curve) noexcept { input = curve; } // not owned
    void find();

    std::span<const Peak> peaks() const noexcept { return found; } // the most prominent first

private:
    struct Candidate {
        Peak peak;
        float height;
        float behind; // the value one column behind the peak
    };

    float valueAt(std::size_t index) const noexcept;
    void addPeak(std::size_t index, float height, float behind, float mean);

    std::span<const float> input;
    std::vector<Candidate> candidates; // by rising index
    std::vector<Peak> found;
};
