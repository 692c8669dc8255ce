#include "framework/FloatPluginParameterUnit.h"

#include "framework/NoteText.h"
#include "framework/NumberFormat.h"
#include "framework/TextHelpers.h"

#include <algorithm>
#include <cmath>

namespace {

using Entry = FloatPluginParameterUnit::Entry;

constexpr std::array<Entry, 3> hzEntries{{{"Hz"}, {"kHz", 1000.0}, {"k", 1000.0}}};
constexpr std::array<Entry, 3> msEntries{{{"ms"}, {"sec", 1000.0}, {"s", 1000.0}}};
constexpr std::array<Entry, 3> secEntries{{{"sec"}, {"s"}, {"ms", 0.001}}};
constexpr std::array<Entry, 9> octavesEntries{{{"semitones"},
                                               {"semitone"},
                                               {"octaves", 12.0},
                                               {"octave", 12.0},
                                               {"oct", 12.0},
                                               {"notes"},
                                               {"note"},
                                               {"cents", 0.01},
                                               {"cent", 0.01}}};
constexpr std::array<Entry, 1> percentEntries{{{"%"}}};
constexpr std::array<Entry, 1> ratioEntries{{{":1"}}};
constexpr std::array<Entry, 1> slopeEntries{{{"dB/oct"}}};

constexpr double zeroHzAt = -5.643856; // where the straight piece of the curve meets 0 Hz
constexpr double jointAt = -3.0;       // where it meets 2^x, at 1/8 Hz
constexpr double jointHz = 0.125;      // 2^-3
constexpr double jointSlope = jointHz / (jointAt - zeroHzAt);

double exp2OrZero(double x) noexcept {
    return x > jointAt ? std::exp2(x) : std::max(0.0, (x - zeroHzAt) * jointSlope);
}

double log2OrZero(double hz) noexcept {
    return hz < jointHz ? hz / jointSlope + zeroHzAt : std::log2(hz);
}

double twoToThe(double x) noexcept {
    return std::exp2(x);
}

double log2Of(double hz) noexcept {
    return std::log2(hz);
}

std::string signedLevel(double db) {
    return formatSigned(db, 2);
}

std::string timeText(double ms) {
    return ms < 1000.0 ? formatNumber(ms, "*3f") + " ms" : formatNumber(ms / 1000.0, "*3f") + " sec";
}

} // namespace

bool FloatPluginParameterUnit::convert(std::string_view word, double& number) const noexcept {
    for (const Entry& entry : entries()) {
        if (!compareText(word, entry.name))
            continue;
        number *= entry.factor;
        if (entry.conversion != nullptr)
            number = entry.conversion(number);
        return true;
    }
    return false;
}

bool FloatPluginParameterUnit::format(double, std::string&) const {
    return false;
}

bool FloatPluginParameterUnit::parseSpecial(std::string_view, double&) const {
    return false;
}

void FloatPluginParameterUnit::attach(ParameterTextFormat&) const {}

void FloatPluginParameterUnit::guessUnit(double&, double, double, double) const noexcept {}

std::span<const Entry> FreqParameterUnit::entries() const noexcept {
    return hzEntries;
}

bool FreqParameterUnit::parseSpecial(std::string_view text, double& unit) const {
    double log2Hz = 0.0;
    if (!parseNote(text, log2Hz))
        return false;
    unit = std::exp2(log2Hz);
    return true;
}

void FreqParameterUnit::attach(ParameterTextFormat& format) const {
    format.textFunction = formatFrequency;
}

void ExpFreqParameterUnit::attach(ParameterTextFormat& format) const {
    FreqParameterUnit::attach(format);
    format.displayToUnit = twoToThe;
    format.unitToDisplay = log2Of;
}

void ExpFreqWithZeroParameterUnit::attach(ParameterTextFormat& format) const {
    FreqParameterUnit::attach(format);
    format.displayToUnit = exp2OrZero;
    format.unitToDisplay = log2OrZero;
}

std::span<const Entry> MsParameterUnit::entries() const noexcept {
    return msEntries;
}

bool MsParameterUnit::format(double unit, std::string& text) const {
    text = timeText(unit);
    return true;
}

void MsParameterUnit::guessUnit(double& number, double current, double minimum, double maximum) const noexcept {
    if (number < minimum || (current > 1000.0 && number * 1000.0 < maximum))
        number *= 1000.0;
}

std::span<const Entry> SecParameterUnit::entries() const noexcept {
    return secEntries;
}

bool SecParameterUnit::format(double unit, std::string& text) const {
    text = timeText(unit * 1000.0);
    return true;
}

void SecParameterUnit::guessUnit(double& number, double current, double minimum, double maximum) const noexcept {
    if (number > maximum || (current < 1.0 && number * 0.001 > minimum))
        number *= 0.001;
}

double DBParameterUnitBase::gainToLevel(double gain) noexcept {
    return gain > 0.0 ? std::max(20.0 * std::log10(gain), silenceDb) : silenceDb;
}

void DBParameterUnit::attach(ParameterTextFormat& format) const {
    format.textFunction = signedLevel;
}

void DBRangeParameterUnit::attach(ParameterTextFormat& format) const {
    format.numberFormat = "%.2f";
}

std::span<const Entry> OctavesParameterUnit::entries() const noexcept {
    return octavesEntries;
}

void OctavesParameterUnit::attach(ParameterTextFormat& format) const {
    format.displayToUnit = [](double octaves) noexcept { return octaves * 12.0; };
    format.unitToDisplay = [](double semitones) noexcept { return semitones / 12.0; };
}

std::span<const Entry> PercentParameterUnit::entries() const noexcept {
    return percentEntries;
}

void PercentParameterUnit::attach(ParameterTextFormat& format) const {
    format.numberFormat = "*2f";
    format.separator = "";
}

std::span<const Entry> RatioParameterUnit::entries() const noexcept {
    return ratioEntries;
}

void RatioParameterUnit::attach(ParameterTextFormat& format) const {
    format.numberFormat = "%.2f";
    format.separator = "";
}

std::span<const Entry> SlopeParameterUnit::entries() const noexcept {
    return slopeEntries;
}

void SlopeParameterUnit::attach(ParameterTextFormat& format) const {
    format.numberFormat = "%.1f";
}
