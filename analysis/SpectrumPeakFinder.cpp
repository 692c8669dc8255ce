#include "analysis/SpectrumPeakFinder.h"

#include <algorithm>
#include <cmath>

void SpectrumPeakFinder::find() {
    candidates.clear();
    found.clear();
    const auto first = static_cast<std::size_t>(std::max(firstIndex.get(), 0));
    const auto window = static_cast<std::size_t>(std::max(windowSize.get(), 1));
    bool rising = false;
    double sum = 0.0; // of the last `window` values
    for (std::size_t index = first; index < input.size(); ++index) {
        const float value = valueAt(index);
        const std::size_t walked = index - first;
        sum += static_cast<double>(value);
        if (walked >= window)
            sum -= static_cast<double>(valueAt(index - window));
        // A window of one value has no surroundings.
        const float mean =
            window > 1 ? static_cast<float>(sum / static_cast<double>(std::min(walked + 1, window))) : 0.0f;

        // What the window has just moved past is measured once more: now its surroundings lie behind it.
        for (auto back = candidates.rbegin(); back != candidates.rend() && back->peak.index + window >= index; ++back)
            if (back->peak.index + window == index)
                back->peak.prominence = std::max(back->peak.prominence, back->behind - 0.5f * mean);
        if (walked == 0)
            continue;
        const float previous = valueAt(index - 1);
        if (value >= previous) {
            rising = true;
        } else if (value < previous && rising) {
            rising = false;
            if (value >= threshold)
                addPeak(index - 1, previous, value, mean);
        }
    }

    std::stable_sort(candidates.begin(), candidates.end(),
                     [](const Candidate& a, const Candidate& b) { return a.peak.prominence > b.peak.prominence; });
    const std::size_t kept = std::min(candidates.size(), static_cast<std::size_t>(std::max(maxPeaks.get(), 0)));
    for (std::size_t place = 0; place < kept; ++place)
        found.push_back(candidates[place].peak);
}

float SpectrumPeakFinder::valueAt(std::size_t index) const noexcept {
    return absoluteValues ? std::fabs(input[index]) : input[index];
}

void SpectrumPeakFinder::addPeak(std::size_t index, float height, float behind, float mean) {
    const Candidate candidate{{index, behind - 0.5f * mean}, height, behind};
    const auto window = static_cast<std::size_t>(std::max(windowSize.get(), 1));
    if (candidates.empty() || index - candidates.back().peak.index >= window)
        candidates.push_back(candidate);
    else if (height > candidates.back().height)
        candidates.back() = candidate;
}
