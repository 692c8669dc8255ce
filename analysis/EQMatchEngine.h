// Finds the bands whose sum is closest to a curve, the most important first.
// Threads: the interface's.
#pragma once

#include "analysis/SpectrumPeakFinder.h"
#include "base/Property.h"
#include "eq/AnalogFilterPrototype.h"
#include "wave/AlignedBuffer.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

// A greedy search. Each round makes candidates out of what is left of the curve: cuts where an end falls, a shelf where
// an end stands off, bells at the peaks. Each candidate's values are tuned one at a time to the least mean squared
// error in dB; the best candidate joins the result and its response leaves the curve.
class EQMatchEngine {
public:
    EQMatchEngine() = default;
    EQMatchEngine(const EQMatchEngine&) = delete;
    EQMatchEngine& operator=(const EQMatchEngine&) = delete;
    virtual ~EQMatchEngine() = default;

    virtual bool allowBand(FilterShape shape, std::int32_t order) const; // every candidate asks; all are allowed here

    // The two Log2Hz values say where the columns of the curve stand, the two in Hz where bands may.
    Property<float> maxFrequency{nullptr, 20000.0f};       // Hz
    Property<float> maxLog2Frequency{nullptr, 14.287712f}; // 20 kHz
    Property<std::int32_t> maxBands{nullptr, 24};
    Property<float> minFrequency{nullptr, 20.0f};         // Hz
    Property<float> minLog2Frequency{nullptr, 4.321928f}; // 20 Hz

    void prepare(std::span<const float> curve, float sampleRate); // in dB; behind the properties
    void run();                                                   // once for each prepare

    // Frequencies in Hz, gains linear. Valid to the next run.
    std::span<const AnalogFilterPrototype> bands() const noexcept { return selected; }
    std::int32_t significantBandCount() const noexcept {
        return significantBands;
    }                                                                     // how many of the first are worth it
    std::int64_t evaluationCount() const noexcept { return evaluations; } // of the error, in the last run

private:
    // What a search moves, all other values staying.
    enum class Value { frequency, frequencyAndGain, gain, q };

    struct Candidate {
        AnalogFilterPrototype band;
        float error;
    };

    std::size_t columnOfLog2(double log2Hz) const noexcept;
    std::size_t columnOf(float hz) const noexcept;
    float averageOver(float lowHz, float highHz) const noexcept; // dB, of what is left of the curve
    float lowEnd() const noexcept;                               // dB, over the first octave of the columns
    float highEnd() const noexcept;                              // dB, over the highest that is heard
    float gainAt(std::size_t column) const noexcept;             // linear, as far as a bell can go

    float residualError() noexcept;                                  // of what is left, dB^2
    float residualError(const AnalogFilterPrototype& band) noexcept; // if this band were taken out of it
    float meanSquare() noexcept;
    void setBandValue(AnalogFilterPrototype& band, Value which, float value) const noexcept;
    float fit(AnalogFilterPrototype& band, Value which, float low, float high); // gives the error that it has found

    void sumUp();
    void addCutCandidate(std::int32_t order);
    void addShelfCandidate();
    void addBellCandidate(std::size_t column, std::int32_t order);
    bool isSignificant(const AnalogFilterPrototype& band) const noexcept;
    void takeOut(AnalogFilterPrototype& band) noexcept;

    std::size_t columns = 0;
    std::size_t usedColumns = 0;      // those from here on lie above the half sample rate
    AlignedBuffer<float> target;      // dB, what is left of the curve
    AlignedBuffer<float> frequencies; // Hz
    AlignedBuffer<float> scratch;     // the response whose error is asked for
    std::vector<float> prefixSums;    // of the target
    SpectrumPeakFinder peakFinder;
    std::vector<Candidate> candidates; // of this round
    std::vector<AnalogFilterPrototype> selected;
    std::int32_t significantBands = 0;
    std::int64_t evaluations = 0;
};
