#include "wave/LevelRecords.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float silenceDb = -180.0f;

float magnitudeToDb(float magnitude) {
    magnitude = std::fabs(magnitude);
    return magnitude > 1e-10f ? std::max(20.0f * std::log10(magnitude), silenceDb) : silenceDb;
}

} // namespace

float LevelRecords::Settings::inputFloor() const noexcept REALTIME {
    if (outputDomain != LevelDomain::decibels || inputDomain == LevelDomain::decibels)
        return floor();
    return std::pow(10.0f, floor() / (inputDomain == LevelDomain::power ? 10.0f : 20.0f));
}

void LevelRecords::configure(const Settings& wanted) {
    settings = wanted;
    for (Record& record : records)
        record.value = limited(record.value);
    pendingPeak = limited(pendingPeak);
}

void LevelRecords::reset() {
    const double rate = static_cast<double>(settings.sampleRate);
    const double direction = settings.largest() ? -1.0 : 1.0;
    records[present].holdSamples = static_cast<double>(settings.levelHold) * rate;
    records[present].fallPerSample = direction * static_cast<double>(settings.levelFall) / rate;
    records[peak].holdSamples = static_cast<double>(settings.peakHold) * rate;
    records[peak].fallPerSample = direction * static_cast<double>(settings.peakFall) / rate;
    for (Record& record : records)
        record.age = 0.0;
    pendingPeak = records[present].value = settings.floor();
    if (!overload)
        records[peak].value = records[extreme].value = settings.floor();
}

void LevelRecords::resetPeak() {
    pendingPeak = records[peak].value = records[extreme].value = settings.floor();
    records[peak].age = records[peak].holdSamples + 1.0; // free to fall
    overload = false;
}

void LevelRecords::apply(float level, double count) {
    if (settings.inputDomain != LevelDomain::decibels && settings.outputDomain == LevelDomain::decibels) {
        if (level == settings.inputFloor()) // there and back again would end beside the floor
            level = settings.floor();
        else
            level = magnitudeToDb(settings.inputDomain == LevelDomain::power ? std::sqrt(std::fabs(level)) : level);
    }
    for (std::size_t index = 0; index < records.size(); ++index)
        updateRecord(index, level, count);
}

float LevelRecords::value(LevelSource::Info info) const {
    const auto index = static_cast<std::size_t>(info);
    return records[std::min(index, extreme)].value;
}

bool LevelRecords::isAboveFloor() const {
    return records[present].value != settings.floor() || records[peak].value != settings.floor();
}

float LevelRecords::limited(float level) const {
    return std::max(std::min(level, settings.maximum), settings.minimum);
}

void LevelRecords::updateRecord(std::size_t index, float level, double count) {
    Record& record = records[index];
    record.age += count;
    if (index == peak && level > 0.0f && settings.holdOverload != 0 && settings.largest() && settings.maximum > 0.0f)
        overload = true;

    const bool falling = index == present || (index == peak && !overload);
    if (falling && count > static_cast<double>(settings.sampleRate)) { // more than a second without data
        level = settings.floor();
        if (index == peak)
            pendingPeak = settings.floor();
    }
    if (above(level, record.value)) {
        record.value = limited(level);
        record.age = 0.0;
    } else if (falling && record.age > record.holdSamples) {
        auto fallen = static_cast<float>(static_cast<double>(record.value) + count * record.fallPerSample);
        if (above(level, fallen))
            fallen = level;
        if (index == peak && above(pendingPeak, fallen)) {
            // Steps down to what came while it held, and holds again.
            fallen = pendingPeak;
            record.age = 0.0;
            pendingPeak = settings.floor();
        }
        record.value = limited(fallen);
    } else if (index == peak && record.age >= record.holdSamples * 0.5 && record.age <= record.holdSamples) {
        if (above(level, pendingPeak))
            pendingPeak = level;
    }
}
