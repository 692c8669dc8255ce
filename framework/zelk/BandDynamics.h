// How one band moves with the signal: the detector over all channels, the compander behind it, and the meters that show
// both. One for all channels, so that they move together.
// Threads: audio, except construction (main); the meters' read sides as LevelSource says.
#pragma once

#include "base/Realtime.h"
#include "eq/BandCompander.h"
#include "framework/zelk/ZelkProcessor.h"
#include "wave/DelayFilter.h"
#include "wave/LevelMeter.h"
#include "wave/Mixer.h"

#include <array>
#include <cstdint>
#include <memory>

class EQParameterSet;

class ZelkProcessor::BandDynamics {
public:
    // What a band listens to: a filter of one section over its region.
    struct Region {
        FilterShape shape;
        float frequency; // log2 of Hz
        float q;
    };

    // Delays that line the detector up with the kernels of Linear Phase, in samples; below 1: none.
    struct Delays {
        std::int32_t detector = 0; // ahead of the compander
        std::int32_t meters = 0;   // of both meters behind it
    };

    BandDynamics(ZelkProcessor& processor, const EQParameterSet& parametersOfBand);
    BandDynamics(const BandDynamics&) = delete;
    BandDynamics& operator=(const BandDynamics&) = delete;

    // Whether the settings ask for dynamics, whatever the processing mode allows.
    [[nodiscard]] bool isWanted() const noexcept REALTIME;
    [[nodiscard]] bool isActive() const noexcept REALTIME { return active; }
    [[nodiscard]] bool hasAutoThreshold() const noexcept REALTIME { return autoThreshold; }

    bool setActive(bool wanted) noexcept REALTIME; // false: it was so before
    bool updateAutoThreshold() noexcept REALTIME;  // the same

    Region configure() noexcept REALTIME;          // threshold, knee, times and meters follow the parameters
    void setDelays(const Delays& wanted) noexcept; // allocates those that change

    Mixer detector; // the largest magnitude of the channels; one input each
    BandCompander compander;
    LevelMeter gainMeter;
    LevelMeter thresholdMeter;

private:
    void setPolarity(bool upward) noexcept REALTIME;
    void renewDelay(std::size_t place, std::int32_t samples, wave::Producer& source) noexcept;
    wave::Producer& behind(std::size_t place, wave::Producer& source) noexcept REALTIME;

    const EQParameterSet& parameters;
    wave::Environment& environment;
    std::array<std::unique_ptr<wave::DelayFilter>, 3> delays; // of the detector, of each meter
    bool active = false;
    bool autoThreshold = false;
};
