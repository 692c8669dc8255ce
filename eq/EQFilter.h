// One band of the equalizer on one channel: follows the settings of the band with coefficient rows, as often as they
// move and no oftener.
// Threads: those of BiquadFilter.
#pragma once

#include "base/Property.h"
#include "eq/AnalogFilterPrototype.h"
#include "eq/BandDesign.h"
#include "eq/BiquadFilter.h"
#include "eq/SectionCoefficients.h"
#include "wave/FloatParameterBus.h"

#include <array>
#include <cstddef>
#include <cstdint>

class EQFilter final : public BiquadFilter {
public:
    using Slope = FilterSlope;
    using CoefficientCalculation = ::CoefficientCalculation;

    // granularity: 1 for a band whose gain may move from sample to sample, 4 for all others.
    EQFilter(wave::Environment& owner, std::size_t sections, std::int32_t granularity);
    EQFilter(wave::Environment& owner, std::size_t sections, EQFilter& queueOwner); // see BiquadProcessor

    Property<CoefficientCalculation> coefficientCalculation{this, CoefficientCalculation::magnitudeMatch};
    FloatParameterBus frequency{environment, 10.0f, 0.0f, 15.0f};     // log2 of Hz
    FloatParameterBus gain{environment, 0.0f, -maxGainDb, maxGainDb}; // dB
    Property<bool> gainModulated{this, false};                        // the gain may move inside a block
    FloatParameterBus q{environment, 1.0f, 0.025f, 40.0f};            // plain Q
    Property<FilterShape> shape{this, FilterShape::bell};
    Property<FilterSlope> slope{this, FilterSlope::db12};

    void reset() noexcept REALTIME override;
    void calculateCoefficients(std::int32_t count, BiquadProcessor& wanted) noexcept REALTIME override;
    void clearLink() noexcept REALTIME override;

    // For a chain that runs the sections of filters which stand still by itself. What this filter is in the cycle that
    // begins; unless it moves, the block counts as run. `paired`: together with its partner.
    enum class Steadiness : std::uint8_t {
        rests, // hands on its input
        runs,  // the same sections as before, and nothing else
        moves, // must be pulled
    };
    Steadiness prepareSteady(std::int32_t count, bool paired) noexcept REALTIME;
    std::size_t listSections(BiquadSection* out) noexcept REALTIME; // how many there are

    const AnalogFilterPrototype& getPrototype() const noexcept REALTIME { return prototype; } // as last designed

protected:
    void propertyChanged(AbstractProperty& property) override;

private:
    using Row = std::array<double, BiquadProcessor::maxSections * sectionLength>;

    enum class Look : std::uint8_t { nothing, frequency, allSettings };

    struct Values {
        const float* frequency;
        const float* gain;
        const float* q;
    };

    void initialise();
    void markChanged() noexcept REALTIME { // the next block designs anew
        lastFrequency = -1.0f;
        samplesToLook = 0;
    }
    Look nextLook() noexcept REALTIME;
    void passLooks(std::int32_t count) noexcept REALTIME;
    bool strayed(float newFrequency) const noexcept REALTIME;
    bool differs(const Values& values, std::int32_t i) const noexcept REALTIME;
    void followGain(const Values& values, std::int32_t count, bool aloneMoves,
                    BiquadProcessor& wanted) noexcept REALTIME;
    std::int32_t countMoves(const float* gains, std::int32_t count) const noexcept REALTIME;
    bool queueMoves(const float* gains, std::int32_t count, BiquadProcessor& wanted) noexcept REALTIME;
    void followFrequency(const Values& values, std::int32_t count, BiquadProcessor& wanted) noexcept REALTIME;
    void updateFrequency(float newFrequency, float newQ) noexcept REALTIME;
    void designRow(float newGain, bool interpolate) noexcept REALTIME;
    void designAt(float gainDb, Row& row) noexcept REALTIME;
    bool bracket(float gainDb) noexcept REALTIME;
    void interpolateRow(float gainDb) noexcept REALTIME;
    EQFilter& filterInUse() noexcept REALTIME;
    void updateForm() noexcept REALTIME;

    AnalogFilterPrototype prototype;
    std::size_t sectionCount = 1; // of the rows
    Row currentRow{};             // in use at the end of the last block
    Row lowRow{};                 // of the bracket: a row at each end of a dB, and all gains between are interpolated
    Row highRow{};
    float gainLow = 0.0f; // dB; both that of currentRow while there is no bracket
    float gainHigh = 0.0f;
    bool bracketActive = false;

    float lastFrequency = -1.0f; // settings of the present row; -1: it must be designed anew
    float lastGain = 0.0f;
    float lastQ = 1.0f;
    std::int32_t samplesToLook = 0; // until all settings are compared again
    float mixScale = 1.0f;          // share of the filtered signal
    float designQ = 1.0f;           // derived from lastFrequency and lastQ
    float w0 = 1.0f;                // radians per sample
    float wReference = 1.0f;        // radians per sample of the flat tilt's middle
    std::uint64_t calculated = 0;   // behind the position of the last calculation: of a pair, whose row is in use
};
