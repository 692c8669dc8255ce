// Shows the levels of several channels as one.
// Threads: those of LevelSource.
#pragma once

#include "wave/LevelSource.h"

#include <array>
#include <cstddef>

class CombinedLevelSource final : public LevelSource {
public:
    static constexpr std::size_t maximalSourceCount = 16; // channels of the largest layout

    void setSource(std::size_t index, LevelSource* source); // not owned, may be null

    // Those of the first source decide what counts. Without any: the largest, -180 dB.
    Detection getDetection() override;
    float level(Info info) override;
    void resetPeak() override;
    void releaseHold() override;

private:
    std::array<LevelSource*, maximalSourceCount> sources{};
};
