#include "framework/FloatPluginParameter.h"

#include "base/FloatTolerance.h"
#include "base/ReleaseAssert.h"
#include "framework/FloatPluginParameterUnit.h"
#include "framework/NumberFormat.h"
#include "framework/TextHelpers.h"

#include <algorithm>
#include <cmath>

namespace {

// The shapes are pure functions of their argument.
double shaped(ParameterTextFormat::Shape shape, double x) noexcept REALTIME {
    return trustedRealtime([&] { return shape(x); });
}

} // namespace

FloatPluginParameter::FloatPluginParameter(GenericParameterOwner* listener, std::string_view literal)
    : TypedPluginParameter<float>(listener, Kind::continuous, literal) {}

void FloatPluginParameter::setRange(float lowest, float highest, float standard) {
    release_assert(lowest <= standard && standard <= highest);
    lowestValue = lowest;
    highestValue = highest;
    standardValue = standard;
    store(standard);
}

void FloatPluginParameter::setUnit(const FloatPluginParameterUnit& wanted) {
    unit = &wanted;
    textFormat.suffix = wanted.name();
    wanted.attach(textFormat);
}

void FloatPluginParameter::setLinearDisplay() noexcept {
    const double span = static_cast<double>(highestValue) - static_cast<double>(lowestValue);
    textFormat.shapedScale = 90.0 / span;
    textFormat.shapedOffset = -90.0 - static_cast<double>(lowestValue) * textFormat.shapedScale;
    textFormat.displayScale = 1.0;
    textFormat.displayOffset = 0.0;
}

float FloatPluginParameter::valueFromUnit(double unitValue) const noexcept REALTIME {
    return valueFromDisplay((shaped(textFormat.unitToDisplay, unitValue) - textFormat.displayOffset) /
                            textFormat.displayScale);
}

float FloatPluginParameter::valueFromDisplay(double display) const noexcept REALTIME {
    return static_cast<float>(
        shaped(textFormat.shapedToValue, (display - textFormat.shapedOffset) / textFormat.shapedScale));
}

double FloatPluginParameter::unitFromValue(float value) const noexcept REALTIME {
    return shaped(textFormat.displayToUnit,
                  displayFromValue(value) * textFormat.displayScale + textFormat.displayOffset);
}

double FloatPluginParameter::displayFromValue(float value) const noexcept REALTIME {
    return shaped(textFormat.valueToShaped, static_cast<double>(value)) * textFormat.shapedScale +
           textFormat.shapedOffset;
}

double FloatPluginParameter::normalize(float value) const noexcept REALTIME {
    const double low = static_cast<double>(lowestValue);
    const double span = static_cast<double>(highestValue) - low;
    return span > 0.0 ? (static_cast<double>(value) - low) / span : 0.0;
}

float FloatPluginParameter::denormalize(double normalized) const noexcept REALTIME {
    if (!(normalized > 0.0)) // a not-a-number too
        return lowestValue;
    if (normalized >= 1.0)
        return highestValue;
    const double low = static_cast<double>(lowestValue);
    return static_cast<float>((static_cast<double>(highestValue) - low) * normalized + low);
}

double FloatPluginParameter::normalizeForVersion(float value, std::int32_t) const noexcept {
    return normalize(value);
}

bool FloatPluginParameter::denormalizeForVersion(double normalized, std::int32_t, float& value) const noexcept {
    value = denormalize(normalized);
    return true;
}

std::int32_t FloatPluginParameter::limitForVersion(std::int32_t) const noexcept {
    return -1;
}

std::string FloatPluginParameter::text(float value) const {
    const double unitValue = unitFromValue(value);
    std::string result;
    if (unit != nullptr && unit->format(unitValue, result))
        return result;
    result = textFormat.textFunction != nullptr ? textFormat.textFunction(unitValue)
                                                : formatNumber(unitValue, textFormat.numberFormat);
    if (!textFormat.suffix.empty())
        result.append(textFormat.separator).append(textFormat.suffix);
    return result;
}

std::string FloatPluginParameter::shortText(float value, std::size_t maxLength) const {
    std::string result = text(value);
    if (maxLength > 0 && result.size() > maxLength)
        result.resize(maxLength);
    return result;
}

bool FloatPluginParameter::parseText(std::string_view text, float& value) const {
    float result = 0.0f;
    const bool understood = parse(text, result) && std::isfinite(result);
    value = understood ? limited(result) : get();
    return understood;
}

bool FloatPluginParameter::parse(std::string_view text, float& result) const {
    std::string points(text);
    std::replace(points.begin(), points.end(), ',', '.');
    std::string_view rest = withoutBlanks(points);
    if (!textFormat.inputPrefix.empty() && startsWithText(rest, textFormat.inputPrefix))
        rest = withoutBlanks(rest.substr(textFormat.inputPrefix.size()));

    double number = 0.0;
    const std::size_t taken = readFormattedNumber(rest, number);
    if (taken == 0)
        return parseSpecial(rest, result);
    const std::string_view word = withoutBlanks(rest.substr(taken));
    if (word == "%" && textFormat.suffix != "%") {
        result = denormalize(number * 0.01);
        return true;
    }

    const double atMinimum = unitFromValue(lowestValue);
    const double atMaximum = unitFromValue(highestValue);
    const double lowest = std::min(atMinimum, atMaximum); // the chain may run backward
    const double highest = std::max(atMinimum, atMaximum);
    if (word.empty()) {
        if (unit != nullptr)
            unit->guessUnit(number, unitFromValue(get()), lowest, highest);
    } else if (unit != nullptr) {
        if (!unit->convert(word, number))
            return false;
    } else if (word != textFormat.suffix) {
        return false;
    }
    if (highest <= 0.0) // "30" on a level that can only fall
        number = -std::fabs(number);
    result = valueFromUnit(std::clamp(number, lowest, highest));
    return true;
}

bool FloatPluginParameter::parseSpecial(std::string_view text, float& result) const {
    double unitValue = 0.0;
    if (unit == nullptr || !unit->parseSpecial(text, unitValue))
        return false;
    result = valueFromUnit(unitValue);
    return true;
}

void FloatPluginParameter::setValue(float wanted, std::uint32_t flags) noexcept {
    if (!std::isfinite(wanted))
        return;
    const float changed = limited(wanted);
    if (nearlyEqual(changed, get()))
        return;
    store(changed);
    tellOwner(changed, flags);
}

void FloatPluginParameter::notifyListeners(float changed) noexcept {
    assignToListeners(static_cast<float>(displayFromValue(changed)));
}

float FloatPluginParameter::limited(float value) const noexcept REALTIME {
    return std::clamp(value, lowestValue, highestValue);
}
