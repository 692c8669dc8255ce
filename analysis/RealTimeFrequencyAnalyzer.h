// Turns streams of samples into spectra: the largest magnitude of each bin over all channels and over all windows since
// the last look.
// Threads: one reader's, the same at all times.
#pragma once

#include "analysis/AnalyzerSettings.h"
#include "base/IntervalTimer.h"
#include "base/Property.h"
#include "wave/AlignedBuffer.h"
#include "wave/AudioSource.h"
#include "wave/FFTBlock.h"
#include "wave/FFTPlan.h"
#include "wave/SpectrumSource.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

// All sources advance together, at the pace of the first; one that delivers less is silent for the rest. Windows
// overlap by three quarters. The work runs inside the first lock of any measurement.
class RealTimeFrequencyAnalyzer {
public:
    class SpectrumMeasurement;

    static constexpr std::size_t maximumChannels = 16; // of a source; those beyond are not heard

    // The longest window is the larger of the two sizes, rounded up to a power of 2. The timer tells how long no audio
    // has come.
    RealTimeFrequencyAnalyzer(std::size_t sourceCount, std::int32_t sizeA, std::int32_t sizeB, float sidelobeDb,
                              std::unique_ptr<IntervalTimer> sinceAudio);
    RealTimeFrequencyAnalyzer(const AnalyzerLayout& layout, std::unique_ptr<IntervalTimer> sinceAudio);
    ~RealTimeFrequencyAnalyzer();
    RealTimeFrequencyAnalyzer(const RealTimeFrequencyAnalyzer&) = delete;
    RealTimeFrequencyAnalyzer& operator=(const RealTimeFrequencyAnalyzer&) = delete;

    Property<std::int32_t> fftSize; // rounded up to a power of 2, at most the longest; from the next step on

    SpectrumMeasurement& measurement(std::size_t index) noexcept { return *measurements[index]; }
    std::size_t sourceCount() const noexcept { return measurements.size(); }

private:
    void lockSources();
    void unlockSources();
    std::int32_t wantedSize() const noexcept;
    void preparePlan();
    void analyse();
    void record(std::size_t begin, std::size_t count);
    void finishHop();
    void takeMagnitudes(const AlignedBuffer<float>& ring, std::span<float> largest, bool first);

    const std::int32_t maxSize; // ring length, a power of 2
    const float sidelobes;      // dB
    std::unique_ptr<FFTPlan> plan;
    std::unique_ptr<FFTBlock> transform;
    std::vector<std::unique_ptr<SpectrumMeasurement>> measurements;
    std::unique_ptr<IntervalTimer> idleTimer;

    std::size_t writePosition = 0; // of all rings
    bool wrapped = false;          // the rings hold audio behind the write position
    bool stepIsNew = false;        // no window of this step has been taken yet
    std::int32_t lockCount = 0;
};

class RealTimeFrequencyAnalyzer::SpectrumMeasurement final : public SpectrumSource {
public:
    explicit SpectrumMeasurement(RealTimeFrequencyAnalyzer& owner) : analyzer(owner) {}

    void connect(AudioSource* wanted) noexcept {
        source = wanted;
    } // not owned; no source, no analysis; not while locked

    void lock() override { analyzer.lockSources(); }
    void unlock() override { analyzer.unlockSources(); }
    std::span<const float> data() const override { return magnitudes; }
    std::size_t size() const override { return static_cast<std::size_t>(analyzer.plan->getSize()); }
    std::uint32_t frameCounter() const override { return frames; }

private:
    friend class RealTimeFrequencyAnalyzer;

    RealTimeFrequencyAnalyzer& analyzer;
    AudioSource* source = nullptr;
    std::vector<float> magnitudes;
    std::vector<AlignedBuffer<float>> rings; // one a channel, made when the channel first appears
    std::uint32_t frames = 0;
};
