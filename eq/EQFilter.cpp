#include "eq/EQFilter.h"

#include "base/FloatTolerance.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <span>

namespace {

constexpr float coarseStep = 0.1f;           // octaves that a row may lag behind between two looks at all settings
constexpr std::int32_t coarsePeriod = 4;     // samples between two looks at the frequency
constexpr std::int32_t finePeriod = 32;      // samples between two looks at all settings
constexpr std::int32_t fewestMoves = 4;      // samples that are worth it to be queued at once
constexpr float smallestGain = 0.01f;        // dB that is designed: below, sections would be flat and have no poles
constexpr float fadeGain = 0.05f;            // dB below which the filtered signal fades out
constexpr float highestTangent = 3.1315928f; // radians per sample, 0.01 below Nyquist

// An interpolated row needs poles at both ends. A flat section has none: it takes those of its counterpart and stays
// the same constant gain.
void lendPoles(const double* section, double* flat) noexcept {
    const double constant = flat[2];
    flat[0] = section[0];
    flat[1] = section[1];
    flat[3] = (section[1] - section[0]) * constant;
    flat[4] = constant;
}

// Of one section, for a gain a sample.
void interpolateSection(const double* low, const double* high, float gainLow, const float* gains, std::int32_t count,
                        double* rows, std::size_t rowLength) noexcept {
    std::array<double, sectionLength> from, slope; // of its own, so that the rows cannot lie over them
    for (std::size_t i = 0; i < sectionLength; ++i) {
        from[i] = low[i];
        slope[i] = high[i] - low[i];
    }
    for (std::int32_t k = 0; k < count; ++k, rows += rowLength) {
        const double distance = static_cast<double>(gains[k] - gainLow);
        for (std::size_t i = 0; i < sectionLength; ++i)
            rows[i] = from[i] + slope[i] * distance;
    }
}

} // namespace

EQFilter::EQFilter(wave::Environment& owner, std::size_t sections, std::int32_t granularity)
    : BiquadFilter(owner, sections, granularity) {
    initialise();
}

EQFilter::EQFilter(wave::Environment& owner, std::size_t sections, EQFilter& queueOwner)
    : BiquadFilter(owner, sections, queueOwner) {
    initialise();
}

void EQFilter::initialise() {
    processor.resetMode = BiquadProcessor::ResetMode::resetFollowInput; // as after every change to such a shape
    wReference = static_cast<float>(2.0 * std::numbers::pi * flatTiltHz / static_cast<double>(environment.sampleRate));
}

void EQFilter::reset() noexcept REALTIME {
    BiquadFilter::reset();
    markChanged();
    samplesToLook = 0;
    lastGain = 0.0f;
    gainLow = gainHigh = 0.0f;
    bracketActive = false;
    lastQ = 1.0f;
    w0 = 1.0f;
    wReference = static_cast<float>(2.0 * std::numbers::pi * flatTiltHz / static_cast<double>(environment.sampleRate));
}

void EQFilter::clearLink() noexcept REALTIME {
    BiquadFilter::clearLink();
    markChanged();
    if (getPartner() != nullptr)
        static_cast<EQFilter*>(getPartner())->markChanged();
}

void EQFilter::propertyChanged(AbstractProperty& property) {
    BiquadFilter::propertyChanged(property);
    if (&property == &enabled) {
        if (enabled)
            markChanged();
        return;
    }
    markChanged();
    if (&property == &shape || &property == &slope) {
        const bool brickwall =
            slope == FilterSlope::brickwall && (shape == FilterShape::lowPass || shape == FilterShape::highPass);
        processor.resetMode =
            brickwall ? BiquadProcessor::ResetMode::resetClear : BiquadProcessor::ResetMode::resetFollowInput;
        const EQFilter& inUse = filterInUse();
        processor.replace(inUse.currentRow.data(), inUse.mixScale);
    }
    if (&property != &coefficientCalculation)
        updateForm();
}

// Of a linked pair only one calculates: its row is that of both channels.
EQFilter& EQFilter::filterInUse() noexcept REALTIME {
    if (!processor.isLinked() || getPartner() == nullptr)
        return *this;
    auto& partner = static_cast<EQFilter&>(*getPartner());
    return partner.calculated > calculated ? partner : *this;
}

// The row goes over to the new form with the memory: more changes may come before it is designed anew.
void EQFilter::updateForm() noexcept REALTIME {
    const bool moves = gainModulated && AnalogFilterPrototype::hasGain(shape);
    const SectionForm wanted = moves ? SectionForm::stateVariable : SectionForm::direct;
    if (wanted == processor.getForm())
        return;
    EQFilter& inUse = filterInUse();
    processor.setForm(wanted, inUse.currentRow.data());
    for (std::size_t s = 0; s < inUse.sectionCount; ++s)
        convertSectionRow(wanted, inUse.currentRow.data() + s * sectionLength);
}

void EQFilter::calculateCoefficients(std::int32_t count, BiquadProcessor& wanted) noexcept REALTIME {
    calculated = environment.position + 1;
    const wave::BasicBlock<float>& frequencies = frequency.read(count);
    const wave::BasicBlock<float>& qs = q.read(count);
    const wave::BasicBlock<float>& gains =
        AnalogFilterPrototype::hasGain(shape) ? gain.read(count) : environment.zeroBlock;
    sectionCount = static_cast<std::size_t>((order(shape, slope) + 1) / 2);
    wanted.setSectionCount(sectionCount);

    const Values values{frequencies.data(), gains.data(), qs.data()};
    const bool constant = frequencies.isConstant != 0 && qs.isConstant != 0 && gains.isConstant != 0;
    if (constant && !bracketActive && !differs(values, 0)) {
        wanted.enqueue(count, currentRow.data(), mixScale);
        samplesToLook = std::max(samplesToLook - count, 0);
    } else if (constant && samplesToLook == 0) {
        updateFrequency(values.frequency[0], values.q[0]);
        designRow(values.gain[0], false);
        wanted.enqueue(count, currentRow.data(), mixScale);
    } else if (gainModulated && gains.isConstant == 0) {
        followGain(values, count, frequencies.isConstant != 0 && qs.isConstant != 0, wanted);
    } else {
        followFrequency(values, count, wanted);
    }
}

EQFilter::Steadiness EQFilter::prepareSteady(std::int32_t count, bool paired) noexcept REALTIME {
    const auto* const sister = static_cast<const EQFilter*>(getPartner());
    const bool whole = processor.isLinked() == paired && processor.getForm() == SectionForm::direct && isWhole() &&
                       processor.isFullyOn() && (!paired || (sister->isWhole() && sister->processor.isFullyOn()));
    const bool rests = mixScale == 0.0f && !processor.isFading();
    if (!whole || (!rests && !(processor.isSteady() && mixScale == 1.0f && (!paired || sister->processor.isSteady()))))
        return Steadiness::moves;
    const wave::BasicBlock<float>& frequencies = frequency.read(count);
    const wave::BasicBlock<float>& qs = q.read(count);
    const wave::BasicBlock<float>& gains =
        AnalogFilterPrototype::hasGain(shape) ? gain.read(count) : environment.zeroBlock;
    const bool constant = frequencies.isConstant != 0 && qs.isConstant != 0 && gains.isConstant != 0;
    if (!constant || bracketActive || differs({frequencies.data(), gains.data(), qs.data()}, 0))
        return Steadiness::moves;
    samplesToLook = std::max(samplesToLook - count, 0);
    calculated = environment.position + 1;
    noteSteadyBlock(count);
    return rests ? Steadiness::rests : Steadiness::runs;
}

std::size_t EQFilter::listSections(BiquadSection* out) noexcept REALTIME {
    BiquadProcessor* const sister = processor.isLinked() ? &static_cast<EQFilter*>(getPartner())->processor : nullptr;
    for (std::size_t s = 0; s < sectionCount; ++s)
        out[s] = {currentRow.data() + s * sectionLength,
                  {processor.memoryOf(s), sister != nullptr ? sister->memoryOf(s) : nullptr}};
    return sectionCount;
}

bool EQFilter::differs(const Values& values, std::int32_t i) const noexcept REALTIME {
    return !nearlyEqual(values.frequency[i], lastFrequency) || !nearlyEqual(values.gain[i], lastGain) ||
           !nearlyEqual(values.q[i], lastQ);
}

// What the next sample is looked at for. The looks at all settings go on at their distance from block to block, so that
// a glide is followed in the same steps however the host cuts the time.
EQFilter::Look EQFilter::nextLook() noexcept REALTIME {
    if (samplesToLook == 0) {
        samplesToLook = finePeriod - 1;
        return Look::allSettings;
    }
    return samplesToLook-- % coarsePeriod == 0 ? Look::frequency : Look::nothing;
}

// What comes of as many looks that find nothing.
void EQFilter::passLooks(std::int32_t count) noexcept REALTIME {
    samplesToLook = (samplesToLook - count) & (finePeriod - 1);
}

bool EQFilter::strayed(float newFrequency) const noexcept REALTIME {
    return std::fabs(newFrequency - lastFrequency) > coarseStep;
}

// A gain that moves costs an interpolation a sample; only a frequency or Q that moved costs a design.
void EQFilter::followGain(const Values& values, std::int32_t count, bool aloneMoves,
                          BiquadProcessor& wanted) noexcept REALTIME {
    std::int32_t begin = 0;
    for (std::int32_t i = 0; i < count; ++i) {
        if (aloneMoves && bracketActive && nearlyEqual(values.frequency[i], lastFrequency) &&
            nearlyEqual(values.q[i], lastQ)) {
            const std::int32_t moves = countMoves(values.gain + i, count - i);
            if (moves >= fewestMoves) {
                if (i > begin)
                    wanted.enqueue(i - begin, currentRow.data(), mixScale);
                begin = i;
                if (queueMoves(values.gain + i, moves, wanted)) {
                    passLooks(moves);
                    i += moves - 1;
                    begin = i;
                    continue;
                }
            }
        }
        const Look look = nextLook();
        bool moved = look != Look::nothing && strayed(values.frequency[i]);
        if (look == Look::allSettings)
            moved = moved || !nearlyEqual(values.q[i], lastQ) || !nearlyEqual(values.frequency[i], lastFrequency);
        if (!moved && nearlyEqual(values.gain[i], lastGain))
            continue;
        if (i > begin)
            wanted.enqueue(i - begin, currentRow.data(), mixScale);
        begin = i;
        if (moved)
            updateFrequency(values.frequency[i], values.q[i]);
        designRow(values.gain[i], !moved);
    }
    wanted.enqueue(count - begin, currentRow.data(), mixScale);
}

// Samples that each move the gain, inside the bracket and where nothing fades.
std::int32_t EQFilter::countMoves(const float* gains, std::int32_t count) const noexcept REALTIME {
    float before = lastGain;
    std::int32_t moves = 0;
    for (; moves < count; ++moves) {
        const float now = gains[moves];
        if (nearlyEqual(now, before) || now < gainLow || now > gainHigh || std::fabs(now) < fadeGain)
            break;
        before = now;
    }
    return moves;
}

// Such samples at once: all rows but the last go into the queue, that one is the current row. False, with nothing
// changed: the queue has no room.
bool EQFilter::queueMoves(const float* gains, std::int32_t count, BiquadProcessor& wanted) noexcept REALTIME {
    double* const rows = wanted.enqueueSingles(count - 1, 1.0f);
    if (rows == nullptr)
        return false;
    const std::size_t rowLength = sectionCount * sectionLength;
    for (std::size_t s = 0; s < rowLength; s += sectionLength)
        interpolateSection(lowRow.data() + s, highRow.data() + s, gainLow, gains, count - 1, rows + s, rowLength);
    lastGain = gains[count - 1];
    mixScale = 1.0f;
    interpolateRow(lastGain);
    return true;
}

void EQFilter::followFrequency(const Values& values, std::int32_t count, BiquadProcessor& wanted) noexcept REALTIME {
    std::int32_t begin = 0;
    for (std::int32_t i = 0; i < count; ++i) {
        const Look look = nextLook();
        if (look == Look::nothing)
            continue;
        if (look == Look::allSettings ? !bracketActive && !differs(values, i) : !strayed(values.frequency[i]))
            continue;
        if (i > begin)
            wanted.enqueue(i - begin, currentRow.data(), mixScale);
        begin = i;
        updateFrequency(values.frequency[i], values.q[i]);
        designRow(values.gain[i], false);
    }
    wanted.enqueue(count - begin, currentRow.data(), mixScale);
}

void EQFilter::updateFrequency(float newFrequency, float newQ) noexcept REALTIME {
    lastFrequency = newFrequency;
    lastQ = newQ;
    const float hz = std::max(std::exp2(std::min(lastFrequency, 20.0f)), 1.0f);
    w0 = static_cast<float>(2.0 * static_cast<double>(hz) * std::numbers::pi /
                            static_cast<double>(environment.sampleRate));
    designQ = lastQ;
    if (coefficientCalculation == CoefficientCalculation::bilinearCompensated &&
        AnalogFilterPrototype::isBandShape(shape))
        designQ = lastQ * 0.5f * w0 / std::tan(std::min(w0, highestTangent) * 0.5f);
}

void EQFilter::designRow(float newGain, bool interpolate) noexcept REALTIME {
    lastGain = newGain;
    mixScale = 1.0f;
    float designed = newGain;
    if (AnalogFilterPrototype::hasGain(shape)) {
        const float size = std::fabs(newGain);
        if (size < fadeGain)
            mixScale = size * 20.0f; // 1 / fadeGain
        if (size < smallestGain)
            designed = newGain < 0.0f ? -smallestGain : smallestGain;
        else
            designed = std::clamp(newGain, -maxGainDb, maxGainDb); // a sum of gains can be larger
    }
    if (interpolate && bracket(designed)) {
        bracketActive = true;
        interpolateRow(designed);
        return;
    }
    bracketActive = false;
    designAt(designed, currentRow);
    gainLow = gainHigh = designed;
}

void EQFilter::designAt(float gainDb, Row& row) noexcept REALTIME {
    designBand(shape, slope, gainDb, designQ, static_cast<double>(w0), prototype, static_cast<double>(wReference));
    coefficients(prototype, row, coefficientCalculation, processor.getForm());
}

// Goes to the dB above or below. False, with nothing changed, when the gain is not there either.
bool EQFilter::bracket(float gainDb) noexcept REALTIME {
    if (bracketActive && gainLow <= gainDb && gainDb <= gainHigh)
        return true;
    const bool up = gainDb > gainLow;
    float low = up ? gainHigh : gainLow - 1.0f;
    float high = up ? gainHigh + 1.0f : gainLow;
    if (high > maxGainDb) {
        low = maxGainDb - 1.0f;
        high = maxGainDb;
    } else if (low < -maxGainDb) {
        low = -maxGainDb;
        high = 1.0f - maxGainDb;
    } else if (low <= 0.0f && high >= 0.0f) {
        low = gainDb >= 0.0f ? smallestGain : -1.0f - smallestGain;
        high = low + 1.0f;
    }
    if (gainDb < low || gainDb > high)
        return false;

    const bool keepsLow = nearlyEqual(high, gainLow); // the lower end becomes the upper one
    const bool keepsHigh = !keepsLow && nearlyEqual(low, gainHigh);
    if (keepsLow)
        highRow = bracketActive ? lowRow : currentRow;
    else if (keepsHigh)
        lowRow = bracketActive ? highRow : currentRow;
    if (!keepsHigh)
        designAt(low, lowRow);
    if (!keepsLow)
        designAt(high, highRow);
    gainLow = low;
    gainHigh = high;
    for (std::size_t s = 0; s < sectionCount; ++s) {
        double* const lower = lowRow.data() + s * sectionLength;
        double* const upper = highRow.data() + s * sectionLength;
        if (lower[0] == 0.0 && upper[0] != 0.0)
            lendPoles(upper, lower);
        else if (upper[0] == 0.0 && lower[0] != 0.0)
            lendPoles(lower, upper);
    }
    return true;
}

void EQFilter::interpolateRow(float gainDb) noexcept REALTIME {
    const double distance = static_cast<double>(gainDb - gainLow); // dB; the bracket is 1 dB wide
    const std::size_t used = sectionCount * sectionLength;
    for (std::size_t i = 0; i < used; ++i)
        currentRow[i] = lowRow[i] + (highRow[i] - lowRow[i]) * distance;
}
