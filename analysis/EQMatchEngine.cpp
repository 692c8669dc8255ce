#include "analysis/EQMatchEngine.h"

#include "analysis/Decibels.h"
#include "eq/BandDesign.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float butterworthQ = 0.70710677f;
constexpr float lowestGain = 0.031622775f; // -30 dB
constexpr float highestGain = 31.622776f;
constexpr float below = -100.0f;    // lets fit choose the lower limit
constexpr float above = 1000000.0f; // and the upper one
constexpr std::int32_t cutOrders[] = {1, 2, 3, 4, 6, 8};
constexpr std::int32_t bellOrders[] = {2, 4, 6, 8};

float limitedGain(float db) noexcept {
    return dbToMagnitude(std::clamp(db, -maxGainDb, maxGainDb));
}

// The frequency unit cancels in the responses, so a band is designed in Hz.
void moveTo(AnalogFilterPrototype& band, double hz) noexcept {
    band.setFrequency(hz, 1.0 / hz);
}

void redesign(AnalogFilterPrototype& band, float q, float gain) noexcept {
    band.design(band.kind, band.shape, band.order, q, gain);
    moveTo(band, band.frequency);
}

AnalogFilterPrototype makeBand(FilterShape shape, std::int32_t order, float gain) noexcept {
    AnalogFilterPrototype band;
    band.design(AnalogFilterPrototype::Kind::butterworth, shape, order, butterworthQ, gain);
    return band;
}

} // namespace

bool EQMatchEngine::allowBand(FilterShape, std::int32_t) const {
    return true;
}

void EQMatchEngine::prepare(std::span<const float> curve, float sampleRate) {
    columns = curve.size() < 2 ? 0 : curve.size(); // one column is no curve
    const auto capacity = static_cast<std::int32_t>(columns);
    for (AlignedBuffer<float>* each : {&target, &frequencies, &scratch})
        *each = AlignedBuffer<float>(capacity);
    peakFinder.setInput({});
    if (columns == 0)
        return;
    std::copy(curve.begin(), curve.end(), target.data());
    usedColumns = std::max<std::size_t>(columnOf(0.5f * sampleRate), 1);
    std::fill(target.data() + usedColumns, target.data() + columns, target[usedColumns - 1]);

    const double octaves = static_cast<double>(maxLog2Frequency) - static_cast<double>(minLog2Frequency);
    const double start = static_cast<double>(minLog2Frequency);
    const auto first = static_cast<float>(std::exp2(start));
    const auto second = static_cast<float>(std::exp2(start + octaves / static_cast<double>(columns - 1)));
    const double ratio = static_cast<double>(second) / static_cast<double>(first);
    double frequency = static_cast<double>(first);
    for (std::size_t column = 0; column < columns; ++column, frequency *= ratio)
        frequencies[column] = static_cast<float>(frequency);

    // Peaks count in the audible range, whatever the columns show.
    constexpr double log2Of20Hz = 4.321928;
    constexpr double log2Of20kHz = 14.287712;
    peakFinder.maxPeaks = 8;
    peakFinder.windowSize = 1;
    peakFinder.firstIndex = static_cast<std::int32_t>(columnOfLog2(log2Of20Hz));
    peakFinder.threshold = 0.0f;
    peakFinder.absoluteValues = true;
    peakFinder.setInput({target.data(), columnOfLog2(log2Of20kHz)});
}

std::size_t EQMatchEngine::columnOfLog2(double log2Hz) const noexcept {
    const double last = static_cast<double>(columns - 1);
    const double start = static_cast<double>(minLog2Frequency);
    const double place = (log2Hz - start) * last / (static_cast<double>(maxLog2Frequency) - start);
    return static_cast<std::size_t>(std::clamp(std::round(place), 0.0, last));
}

std::size_t EQMatchEngine::columnOf(float hz) const noexcept {
    return columnOfLog2(std::log2(static_cast<double>(hz)));
}

float EQMatchEngine::averageOver(float lowHz, float highHz) const noexcept {
    const std::size_t begin = columnOf(lowHz);
    const std::size_t end = columnOf(highHz);
    return end > begin ? (prefixSums[end] - prefixSums[begin]) / static_cast<float>(end - begin) : 0.0f;
}

float EQMatchEngine::gainAt(std::size_t column) const noexcept {
    return limitedGain(target[column]);
}

float EQMatchEngine::residualError() noexcept {
    std::fill_n(scratch.data(), usedColumns, 0.0f);
    return meanSquare();
}

float EQMatchEngine::residualError(const AnalogFilterPrototype& band) noexcept {
    band.squaredMagnitudes(frequencies.data(), scratch.data(), usedColumns);
    squaredMagnitudesToDb({scratch.data(), usedColumns});
    return meanSquare();
}

// Of the target less the scratch. Four sums side by side, since the compiler may not take one apart.
float EQMatchEngine::meanSquare() noexcept {
    ++evaluations;
    constexpr std::size_t lanes = 4;
    double sums[lanes] = {};
    const float* __restrict wanted = target.data();
    const float* __restrict response = scratch.data();
    const std::size_t whole = usedColumns / lanes * lanes;
    for (std::size_t column = 0; column < whole; column += lanes)
        for (std::size_t lane = 0; lane < lanes; ++lane) {
            const auto residue = static_cast<double>(wanted[column + lane] - response[column + lane]);
            sums[lane] += residue * residue;
        }
    for (std::size_t column = whole; column < usedColumns; ++column) {
        const auto residue = static_cast<double>(wanted[column] - response[column]);
        sums[0] += residue * residue;
    }
    return static_cast<float>((sums[0] + sums[1] + sums[2] + sums[3]) / static_cast<double>(usedColumns));
}

void EQMatchEngine::setBandValue(AnalogFilterPrototype& band, Value which, float value) const noexcept {
    switch (which) {
    case Value::frequency:
        moveTo(band, static_cast<double>(value));
        break;
    case Value::frequencyAndGain:
        moveTo(band, static_cast<double>(value));
        redesign(band, band.q, gainAt(columnOf(value)));
        break;
    case Value::gain:
        redesign(band, band.q, value);
        break;
    case Value::q:
        redesign(band, value, band.gain);
        break;
    }
}

// Walks down from the upper limit in equal ratios until the error rises, and again with ever smaller ones from the
// point just above the best.
float EQMatchEngine::fit(AnalogFilterPrototype& band, Value which, float low, float high) {
    if (which == Value::frequency || which == Value::frequencyAndGain) {
        low = std::max(minFrequency.get(), low);
        high = std::min(maxFrequency.get(), high);
    } else if (which == Value::gain) {
        low = std::max(low, lowestGain);
        high = std::min(high, highestGain);
    } else {
        low = std::max(shelfQ(band.shape, 0.025f), low); // the plain Q that a band may have
        high = std::min(shelfQ(band.shape, 40.0f), high);
    }
    const auto errorAt = [&](float value) {
        setBandValue(band, which, value);
        return residualError(band);
    };
    constexpr float finestRatio = 0.99f;
    constexpr float indifferent = 0.01f; // dB^2: a bracket with less between its ends needs no finer walk
    float top = high;
    float topError = errorAt(top);
    float best = top;
    float bestError = topError;
    for (float ratio = 0.5f; ratio < finestRatio; ratio = std::sqrt(ratio)) {
        best = top;
        bestError = topError;
        while (best * ratio > low) {
            const float next = best * ratio;
            const float error = errorAt(next);
            if (error > bestError) {
                low = next;
                if (std::fabs(error - topError) <= indifferent)
                    ratio = 1.0f;
                break;
            }
            top = best;
            topError = bestError;
            best = next;
            bestError = error;
        }
    }
    setBandValue(band, which, best);
    return bestError;
}

void EQMatchEngine::sumUp() {
    prefixSums.resize(columns + 1);
    double sum = 0.0;
    for (std::size_t column = 0; column < columns; ++column) {
        prefixSums[column] = static_cast<float>(sum);
        sum += static_cast<double>(target[column]);
    }
    prefixSums[columns] = static_cast<float>(sum);
}

float EQMatchEngine::lowEnd() const noexcept {
    const float start = std::exp2(minLog2Frequency);
    return averageOver(start, 2.0f * start);
}

float EQMatchEngine::highEnd() const noexcept {
    return averageOver(15000.0f, 20000.0f);
}

void EQMatchEngine::addCutCandidate(std::int32_t order) {
    constexpr float leastFall = -6.0f; // dB
    const float low = lowEnd();
    const float high = highEnd();
    if (std::min(low, high) > leastFall)
        return;
    const FilterShape shape = high > low ? FilterShape::highPass : FilterShape::lowPass;
    if (!allowBand(shape, order))
        return;
    AnalogFilterPrototype band = makeBand(shape, order, 1.0f);
    const float error = fit(band, Value::frequency, below, above);
    candidates.push_back({band, error});
}

void EQMatchEngine::addShelfCandidate() {
    constexpr std::int32_t shelfOrder = 2;
    constexpr float leastStep = 1.0f; // dB
    const float low = lowEnd();
    const float high = highEnd();
    const bool atLow = std::fabs(low) > std::fabs(high);
    const FilterShape shape = atLow ? FilterShape::lowShelf : FilterShape::highShelf;
    const float step = atLow ? low : high;
    if (!allowBand(shape, shelfOrder) || std::fabs(step) < leastStep)
        return;
    AnalogFilterPrototype band = makeBand(shape, shelfOrder, limitedGain(step));
    const float error = fit(band, Value::frequency, below, above);
    candidates.push_back({band, error});
}

// Width, place, height, and the width again; a step that makes it worse is taken back.
void EQMatchEngine::addBellCandidate(std::size_t column, std::int32_t order) {
    if (!allowBand(FilterShape::bell, order))
        return;
    AnalogFilterPrototype band = makeBand(FilterShape::bell, order, gainAt(column));
    moveTo(band, static_cast<double>(frequencies[column]));
    float error = fit(band, Value::q, below, above);

    const auto frequency = static_cast<float>(band.frequency);
    const BandEdges edges =
        bandEdges(plainQ(FilterShape::bell, band.q), frequency, FilterShape::bell, FilterSlope::db12);
    const float movedError = fit(band, Value::frequencyAndGain, edges.low, edges.high);
    if (movedError > error)
        setBandValue(band, Value::frequencyAndGain, frequency);
    else
        error = movedError;

    for (const Value which : {Value::gain, Value::q}) {
        const float before = which == Value::gain ? band.gain : band.q;
        const float fitted = fit(band, which, before * 0.5f, before * 2.0f);
        if (fitted > error)
            setBandValue(band, which, before);
        else
            error = fitted;
    }
    candidates.push_back({band, error});
}

bool EQMatchEngine::isSignificant(const AnalogFilterPrototype& band) const noexcept {
    constexpr float leastDbPerQ = 0.5f;
    return band.shape != FilterShape::bell || std::fabs(magnitudeToDb(band.gain)) / band.q > leastDbPerQ;
}

void EQMatchEngine::takeOut(AnalogFilterPrototype& band) noexcept {
    for (std::size_t column = 0; column < columns; ++column) {
        const double power = band.squaredMagnitude(static_cast<double>(frequencies[column]));
        target[column] -= 0.5f * magnitudeToDb(static_cast<float>(power));
    }
}

void EQMatchEngine::run() {
    selected.clear();
    significantBands = 0;
    evaluations = 0;
    if (columns == 0)
        return;
    while (static_cast<std::int32_t>(selected.size()) < maxBands) {
        candidates.clear();
        sumUp();
        for (const std::int32_t order : cutOrders)
            addCutCandidate(order);
        addShelfCandidate();
        peakFinder.find();
        for (const SpectrumPeakFinder::Peak& peak : peakFinder.peaks())
            for (const std::int32_t order : bellOrders)
                addBellCandidate(peak.index, order);

        const auto best = std::min_element(candidates.begin(), candidates.end(),
                                           [](const Candidate& a, const Candidate& b) { return a.error < b.error; });
        if (best == candidates.end() || !(residualError() > best->error))
            return;
        // The first band that is not worth it ends the count.
        if (significantBands == static_cast<std::int32_t>(selected.size()) && isSignificant(best->band))
            ++significantBands;
        selected.push_back(best->band);
        takeOut(selected.back());
    }
}
