#include "analysis/SpectrumPresenter.h"

#include "analysis/AnalysisTiming.h"
#include "analysis/Decibels.h"
#include "base/MonotoneCubic.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr float log2Of1kHz = 9.965784f;
constexpr float loudestMagnitude = 1e10f; // 200 dB: keeps what a broken source sends from poisoning sums

// The part of a step that is made in elapsedMs, when nine tenths of it take `seconds`.
float stepShare(double elapsedMs, float seconds) noexcept {
    return static_cast<float>(1.0 - std::exp(-2.3025851 * 0.001 * elapsedMs / static_cast<double>(seconds)));
}

float largestOf(std::span<const float> magnitudes) noexcept {
    float largest = 0.0f;
    for (const float magnitude : magnitudes)
        largest = magnitude > largest ? magnitude : largest; // a not-a-number never wins
    return std::min(largest, loudestMagnitude);
}

} // namespace

SpectrumPresenter::SpectrumPresenter(std::unique_ptr<IntervalTimer> sinceSpectrum)
    : columnCount(this, 0)
    , attackFactor(this, 0.025f)
    , accumulate(this, false)
    , running(this, true)
    , freeze(this, false)
    , attackFreeze(this, 0.0f, 1.0f, 0.0f)
    , focusColumn(this, -1)
    , releaseFreeze(this, 0.0f, 1.0f, 0.0f)
    , maxLog2Frequency(this, 14.287712f) // 20 kHz
    , minLog2Frequency(this, 4.321928f)  // 20 Hz
    , floorDb(this, -60.0f)
    , releaseTime(this, 2.0f)
    , sampleRate(this, 44100.0f)
    , smoothing(this, 1, ColumnSmoother::maximumWidth, 3)
    , tilt(this, 0.0f)
    , timer(std::move(sinceSpectrum)) {
    smoother.setWidth(smoothing);
}

void SpectrumPresenter::propertyChanged(AbstractProperty& changed) {
    if (&changed == &accumulate)
        reset();
    else if (&changed == &smoothing)
        smoother.setWidth(smoothing);
}

void SpectrumPresenter::setSource(SpectrumSource* wanted) noexcept {
    if (wanted == source)
        return;
    source = wanted;
    if (source != nullptr)
        lastFrame = source->frameCounter();
}

void SpectrumPresenter::reset() {
    frames = 0;
    for (Entry& entry : entries) {
        entry.value = accumulate ? 0.0f : floorDb;
        entry.shown = floorDb;
    }
}

void SpectrumPresenter::update(double elapsedMs) {
    if (!takeSpectrum() && running && !accumulate && !silent && timer->elapsed() > windowTimeout(frame.fftSize)) {
        silent = true;
        for (Entry& entry : entries)
            entry.value = floorDb;
    }
    if (accumulate)
        average();
    else
        move(elapsedMs);
    pictureFloor = floorDb;
    fillColumns();
}

void SpectrumPresenter::followFrame() {
    const std::size_t size = source != nullptr && source->size() > 0 ? source->size() : frame.fftSize;
    const Frame wanted{size, columnCount, minLog2Frequency, maxLog2Frequency, sampleRate};
    if (wanted == frame)
        return;
    const std::size_t oldSize = std::exchange(frame, wanted).fftSize;
    const std::vector<Entry> old = std::exchange(entries, {});
    makeEntries();
    carryOver(old, oldSize);
    shownColumns.assign(frame.columns, floorDb);
}

void SpectrumPresenter::makeEntries() {
    if (frame.columns < 2 || frame.fftSize < 2 || !(frame.rate > 0.0f))
        return;
    const double octaves = static_cast<double>(frame.maxLog2) - static_cast<double>(frame.minLog2);
    const double columnWidth = octaves / static_cast<double>(frame.columns - 1);
    const double binsPerHz = static_cast<double>(frame.fftSize) / static_cast<double>(frame.rate);
    const std::size_t lastBin = frame.fftSize / 2 - 1;
    for (std::size_t column = 0; column < frame.columns; ++column) {
        const double place =
            binsPerHz * std::exp2(static_cast<double>(frame.minLog2) + static_cast<double>(column) * columnWidth);
        const std::size_t bin = place < static_cast<double>(lastBin) ? static_cast<std::size_t>(place) : lastBin;
        if (entries.empty() || entries.back().bin != bin)
            entries.push_back({column, bin, accumulate ? 0.0f : floorDb, floorDb});
    }
}

// The picture stays where it was, as far as it stands out of the floor.
void SpectrumPresenter::carryOver(std::span<const Entry> old, std::size_t oldSize) {
    if (silent || oldSize == 0)
        return;
    auto from = old.begin();
    for (Entry& entry : entries) {
        const std::size_t oldBin = entry.bin * oldSize / frame.fftSize;
        while (from != old.end() && from->bin < oldBin)
            ++from;
        if (from == old.end())
            return;
        if (from->shown > pictureFloor + 1.0f) {
            entry.value = from->value;
            entry.shown = from->shown;
        }
    }
}

bool SpectrumPresenter::takeSpectrum() {
    if (source == nullptr || !running) {
        followFrame();
        return false;
    }
    const LockedSource::Lock held(*source); // may make a new spectrum, of another size too
    followFrame();
    if (source->frameCounter() == lastFrame)
        return false;
    lastFrame = source->frameCounter();
    const std::span<const float> magnitudes = source->data();
    float largest = 0.0f;
    std::size_t begin = entries.empty() ? 0 : entries.front().bin;
    for (Entry& entry : entries) {
        if (entry.bin >= magnitudes.size())
            break;
        begin = std::min(begin, entry.bin);
        const float magnitude = largestOf(magnitudes.subspan(begin, entry.bin + 1 - begin));
        begin = entry.bin + 1;
        if (accumulate)
            entry.value += magnitude;
        else
            entry.value = std::max(magnitudeToDb(magnitude) + tiltAt(entry.column), floorDb.get());
        largest = std::max(largest, magnitude);
    }
    timer->reset();
    silent = false;
    if (accumulate && largest > 3.1622778e-5f) // -90 dB: silence is no part of an average
        ++frames;
    return true;
}

void SpectrumPresenter::average() {
    // Grows in over the first half second.
    const float count = static_cast<float>(frames);
    const float share = std::min(1.0f, 2.0f * static_cast<float>(frame.fftSize) * count / sampleRate);
    const float scale = share / std::max(count, 1.0f);
    for (Entry& entry : entries)
        entry.shown = magnitudeToDb(entry.value * scale) + tiltAt(entry.column);
}

void SpectrumPresenter::move(double elapsedMs) {
    // Longer windows, and windows of slower samples, rise more slowly by nature.
    const float attackTime = static_cast<float>(frame.fftSize) * attackFactor * 21.533203f / sampleRate; // 44100 / 2048
    const float attack = attackTime > 0.0f ? stepShare(elapsedMs, attackTime) : 1.0f;
    moveFade(elapsedMs);
    const float release = (releaseTime > 0.0f ? stepShare(elapsedMs, releaseTime) : 1.0f) * fade;

    const float reach = static_cast<float>(frame.columns) * 0.1f; // columns from the focus to where its effect ends
    const float core = std::trunc(reach * 0.2f);                  // and to where it begins to fade
    for (Entry& entry : entries) {
        const float distance = entry.value - entry.shown;
        float weight = 0.0f;
        if (focusColumn >= 0) {
            const float away = std::fabs(static_cast<float>(entry.column) - static_cast<float>(focusColumn));
            const float edge = std::max(0.0f, away - core);
            if (edge < reach)
                weight = 1.0f - (edge / reach) * (edge / reach);
        }
        if (distance > 0.0f)
            entry.shown += (1.0f - attackFreeze * weight) * attack * distance;
        else
            entry.shown += (1.0f - releaseFreeze * weight) * release * distance;
    }
}

void SpectrumPresenter::moveFade(double elapsedMs) {
    const auto ms = static_cast<float>(elapsedMs);
    if (freeze)
        fade = std::max(fade - ms * 0.0028571428f, 0.0f); // 1 / 350 ms
    else
        fade = std::min(fade + ms * 0.001f, 1.0f);
}

float SpectrumPresenter::tiltAt(std::size_t column) const noexcept {
    const float last = static_cast<float>(frame.columns - 1);
    const float octaves = frame.maxLog2 - frame.minLog2;
    const float pivot = (log2Of1kHz - frame.minLog2) * last / octaves;
    return (static_cast<float>(column) - pivot) * octaves * tilt / last;
}

float SpectrumPresenter::levelOf(const Entry& entry) const {
    float level = entry.shown;
    for (const SubtractiveCurve* curve : curves)
        level += curve->db(static_cast<std::int32_t>(entry.column));
    return level;
}

void SpectrumPresenter::fillColumns() {
    if (entries.size() < 4) {
        shownColumns.assign(frame.columns, floorDb);
        return;
    }
    const auto point = [this](std::ptrdiff_t index) {
        const std::ptrdiff_t inside = std::clamp<std::ptrdiff_t>(index, 0, std::ssize(entries) - 1);
        const auto place = static_cast<std::size_t>(inside);
        return MonotoneCubic::Point{static_cast<double>(entries[place].column), static_cast<double>(levels[place])};
    };
    levels.resize(entries.size());
    std::transform(entries.begin(), entries.end(), levels.begin(), [this](const Entry& each) { return levelOf(each); });
    plain.assign(frame.columns, floorDb);
    for (std::size_t index = 0; index < entries.size(); ++index)
        plain[entries[index].column] = levels[index];
    for (std::ptrdiff_t index = 0; index + 1 < std::ssize(entries); ++index) {
        const std::size_t begin = entries[static_cast<std::size_t>(index)].column + 1;
        const std::size_t end = entries[static_cast<std::size_t>(index) + 1].column;
        if (begin == end)
            continue;
        const MonotoneCubic piece(point(index - 1), point(index), point(index + 1), point(index + 2));
        for (std::size_t column = begin; column < end; ++column)
            plain[column] = static_cast<float>(piece(static_cast<double>(column)));
    }
    smoother.smooth(plain, shownColumns);
}
