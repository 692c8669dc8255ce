// A meter: sink of the graph on one side, LevelSource of the interface on the other.
// Threads: the graph's operations and the properties on the audio thread, or any with the audio excluded; those of
// LevelSource on one reader's thread at any time.
#pragma once

#include "base/IntervalTimer.h"
#include "base/Property.h"
#include "wave/Filter.h"
#include "wave/LevelHandOver.h"
#include "wave/LevelRecords.h"
#include "wave/LevelSource.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>

// The audio thread hands over one extreme a block; whatever moves with time moves on the reader's side, so that a meter
// goes on falling when the audio stops.
//
// Levels cross in LevelHandOver. Settings and resets cross the same way, from graph to reader: the words of the
// settings are stored one by one, then `settingsVersion` is raised, and for a reset `generation` after it, both with
// release. The reader loads the counters with acquire before the words. If it meets a change half stored, its copy may
// mix two states; the counter then goes up after it, and the next poll copies again. Every package carries the
// generation in which it was measured: the reader drops those from before a reset.
class LevelMeter final : public wave::FilterBase, public LevelSource, public PropertyOwner {
public:
    using LevelDomain = ::LevelDomain;

    // The timer belongs to the reader's thread.
    LevelMeter(wave::Environment& owner, std::unique_ptr<IntervalTimer> readerTimer);

    // A change of the limits clamps what is shown, any other resets the meter.
    Property<Detection> detection;
    Property<bool> holdOverload;       // a peak above 0 stays until resetPeak
    Property<float> levelHold;         // seconds before the present level falls
    Property<float> staleTime;         // ms without data before the reader lets the meter fall
    Property<LevelDomain> inputDomain; // of the samples
    Property<float> maximum;           // of what is shown
    Property<float> minimum;
    Property<LevelDomain> outputDomain; // of what is shown
    Property<float> peakHold;           // seconds
    Property<float> peakFall;           // dB per second
    Property<float> levelFall;          // dB per second

    void process(wave::BasicBlock<float>& block, std::int32_t count, std::uint32_t mode) noexcept REALTIME override;
    void reset() noexcept REALTIME override;
    void propertyChanged(AbstractProperty& changed) override;

    Detection getDetection() override; // [reader]
    float level(Info info) override;   // [reader]
    void resetPeak() override;         // [reader]

private:
    static constexpr std::size_t settingsWords = sizeof(LevelRecords::Settings) / sizeof(std::uint32_t);

    LevelRecords::Settings gathered() const noexcept REALTIME;
    void publishSettings() noexcept REALTIME;
    void followSettings();
    void apply(float extreme, double count);

    // The audio side.
    bool largest = true; // derived from the properties
    bool magnitudes = true;
    float inputFloor = 0.0f;

    // Between the two.
    LevelHandOver handOver;
    std::array<std::atomic<std::uint32_t>, settingsWords> sharedSettings;
    std::atomic<std::uint32_t> settingsVersion{0};
    std::atomic<std::uint32_t> generation{0}; // number of resets

    // The reader's side.
    LevelRecords records;
    std::unique_ptr<IntervalTimer> timer; // since the last time the records moved
    std::uint32_t seenVersion = 0;
    std::uint32_t seenGeneration = 0;
    bool readerDecaying = false;
};
