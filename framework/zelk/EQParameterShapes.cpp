#include "framework/zelk/EQParameterShapes.h"

#include "framework/NumberFormat.h"
#include "framework/TextHelpers.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace {

constexpr double ln40 = 3.6888794541139363;

double qFromValue(double value) noexcept {
    return std::exp((2.0 * value - 1.0) * ln40);
}

double valueFromQ(double q) noexcept {
    return std::log(q) * (0.5 / ln40) + 0.5;
}

// Straight pieces: the quiet third of the scale gets a fifth of the travel.
constexpr double thresholdValues[] = {0.0, 0.1, 0.2, 1.0};
constexpr double thresholdShaped[] = {0.0, 0.2, 7.0 / 15.0, 1.0}; // -90, -72, -48 and 0 dB

double interpolate(double x, const double (&from)[4], const double (&to)[4]) noexcept {
    std::size_t piece = 0;
    while (piece < 2 && x > from[piece + 1])
        ++piece;
    const double slope = (to[piece + 1] - to[piece]) / (from[piece + 1] - from[piece]);
    // From the nearer end, so that both ends of a piece come out exactly.
    return x - from[piece] < from[piece + 1] - x ? to[piece] + (x - from[piece]) * slope
                                                 : to[piece + 1] - (from[piece + 1] - x) * slope;
}

double thresholdShapedFromValue(double value) noexcept {
    return interpolate(value, thresholdValues, thresholdShaped);
}

double thresholdValueFromShaped(double shaped) noexcept {
    return interpolate(shaped, thresholdShaped, thresholdValues);
}

// The upper four fifths of the travel are even in dB, 36 for one unit; below, a parabola goes on to true silence.
constexpr double levelJoint = -0.6; // -21.6 dB
constexpr double levelDbPerValue = 36.0;
constexpr double levelParabola = 2.0794094;    // meets 10^(-21.6 / 20) at a fifth of the travel
constexpr double levelJointGain = 0.083176374; // 10^(-21.6 / 20)

double gainFromLevel(double value) noexcept {
    if (value >= levelJoint)
        return std::pow(10.0, value * levelDbPerValue / 20.0);
    const double travel = std::max(0.5 * (value + 1.0), 0.0);
    return travel * travel * levelParabola;
}

double levelFromGain(double gain) noexcept {
    return gain >= levelJointGain ? 20.0 * std::log10(gain) / levelDbPerValue
                                  : 2.0 * std::sqrt(std::max(gain, 0.0) / levelParabola) - 1.0;
}

double dbFromGain(double gain) noexcept {
    return gain > 0.0 ? std::max(20.0 * std::log10(gain), silenceDb) : silenceDb;
}

double gainFromDb(double db) noexcept {
    return db > silenceDb ? std::pow(10.0, db / 20.0) : 0.0;
}

} // namespace

bool ThresholdParameterUnit::format(double unit, std::string& text) const {
    text = unit > autoAbove ? "Auto" : formatNumber(unit, "%+.1f") + " dB";
    return true;
}

bool ThresholdParameterUnit::parseSpecial(std::string_view text, double& unit) const {
    if (!compareText(withoutBlanks(text), "Auto"))
        return false;
    unit = 0.0;
    return true;
}

void shapeAsQ(FloatPluginParameter& parameter) {
    ParameterTextFormat& format = parameter.format();
    format.numberFormat = "*3f";
    format.inputPrefix = "Q:";
    format.valueToShaped = qFromValue;
    format.shapedToValue = valueFromQ;
}

void shapeAsThreshold(FloatPluginParameter& parameter) {
    parameter.setUnit(thresholdUnit);
    parameter.setLinearDisplay();
    parameter.format().valueToShaped = thresholdShapedFromValue;
    parameter.format().shapedToValue = thresholdValueFromShaped;
}

void shapeAsOutputLevel(FloatPluginParameter& parameter) {
    parameter.setUnit(dbUnit);
    ParameterTextFormat& format = parameter.format();
    format.valueToShaped = gainFromLevel;
    format.shapedToValue = levelFromGain;
    format.displayToUnit = dbFromGain;
    format.unitToDisplay = gainFromDb;
}

void shapeAsGainScale(FloatPluginParameter& parameter) {
    parameter.setUnit(percentUnit);
    parameter.format().numberFormat = "*3f";
    parameter.format().displayScale = 100.0;
}
