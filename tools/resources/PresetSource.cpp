#include "tools/resources/PresetSource.h"

#include "base/NumberText.h"
#include "tools/resources/PresetLayout.h"

#include <cmath>
#include <cstdint>

namespace {

using namespace PresetLayout;

constexpr double qSlope = 0.13554251; // 1 / (2 ln 40)

std::string_view withoutBlanks(std::string_view text) {
    const auto isBlank = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

// Takes the part in front of the mark, or all.
std::string_view takePart(std::string_view& text, char mark) {
    const std::size_t end = text.find(mark);
    const std::string_view part = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return withoutBlanks(part);
}

bool takePrefix(std::string_view& text, std::string_view prefix) {
    if (!text.starts_with(prefix))
        return false;
    text = withoutBlanks(text.substr(prefix.size()));
    return true;
}

// "250 Hz" with the unit "Hz".
bool readWithUnit(std::string_view text, std::string_view unit, double& number) {
    const std::size_t taken = readNumber(text, number);
    return taken > 0 && withoutBlanks(text.substr(taken)) == unit;
}

[[noreturn]] void refuse(std::string_view what, std::string_view why) {
    throw PresetSourceError(std::string("\"").append(what).append("\" ").append(why));
}

double within(double number, double lowest, double highest, std::string_view what) {
    if (!(number >= lowest && number <= highest))
        refuse(what, "is out of range");
    return number;
}

// dB below full scale to the stored value, through the corners of the control's scale.
double thresholdValue(double db) {
    constexpr double corners[][2] = {{-90.0, 0.0}, {-72.0, 0.1}, {-48.0, 0.2}, {0.0, 1.0}};
    std::size_t right = 1;
    while (right < 3 && db > corners[right][0])
        ++right;
    const auto& left = corners[right - 1];
    return left[1] + (db - left[0]) * (corners[right][1] - left[1]) / (corners[right][0] - left[0]);
}

double outputLevelValue(double db) {
    return 2.0 * ((db + 21.6) / 72.0 + 0.2) - 1.0; // the upper part of the scale, from -21.6 dB on
}

class Band {
public:
    explicit Band(float* place) : values(place) { set(used, 1.0); }

    void take(std::string_view item) {
        double number = 0.0;
        std::string_view rest = item;
        if (takePrefix(rest, "Q ")) {
            if (!readWithUnit(rest, "", number))
                refuse(item, "has no number");
            set(q, std::log(within(number, 0.025, 40.0, item)) * qSlope + 0.5);
        } else if (takePrefix(rest, "dynamic ")) {
            if (!readWithUnit(rest, "dB", number))
                refuse(item, "has no number of dB");
            set(dynamicRange, within(number, -30.0, 30.0, item));
        } else if (takePrefix(rest, "threshold ")) {
            if (rest == "Auto")
                set(threshold, 1.0);
            else if (readWithUnit(rest, "dB", number))
                set(threshold, thresholdValue(within(number, -90.0, -0.1, item)));
            else
                refuse(item, "has no number of dB");
        } else if (item == "disabled") {
            set(enabled, 0.0);
        } else if (readWithUnit(item, "Hz", number)) {
            set(frequency, std::log2(within(number, 10.0, 30000.0, item)));
        } else if (readWithUnit(item, "kHz", number)) {
            set(frequency, std::log2(within(number, 0.01, 30.0, item) * 1000.0));
        } else if (readWithUnit(item, "dB", number)) {
            set(gain, within(number, -30.0, 30.0, item));
        } else if (!takeName(item, shapeNames, shape) && !takeName(item, slopeNames, slope) &&
                   !takeName(item, placementNames, stereoPlacement) && !takeName(item, speakersNames, speakers)) {
            refuse(item, "is nothing that a band has");
        }
    }

private:
    bool takeName(std::string_view item, std::string_view names, BandValue which) {
        const std::int32_t index = indexOfName(names, item);
        if (index >= 0)
            set(which, index);
        return index >= 0;
    }
    void set(BandValue which, double value) { values[which] = static_cast<float>(value); }

    float* values;
};

float globalValue(const Global& global, std::string_view text) {
    if (!global.valueNames.empty()) {
        const std::int32_t index = indexOfName(global.valueNames, text);
        if (index < 0)
            refuse(text, "is no value of this parameter");
        return static_cast<float>(index);
    }
    const bool isScale = global.name == "Gain Scale";
    const bool isLevel = global.name == "Output Level";
    double number = 0.0;
    if (!readWithUnit(text, isScale ? "%" : isLevel ? "dB" : "", number))
        refuse(text, "is no number in the unit of this parameter");
    if (isScale)
        number /= 100.0;
    else if (isLevel)
        number = outputLevelValue(within(number, -21.6, 36.0, text));
    return static_cast<float>(
        within(number, static_cast<double>(global.lowest), static_cast<double>(global.highest), text));
}

class Reader {
public:
    Reader() {
        for (std::int32_t band = 0; band < bands; ++band)
            source.values.insert(source.values.end(), std::begin(bandDefaults), std::end(bandDefaults));
        for (const Global& global : globals)
            source.values.push_back(global.standard);
    }

    void take(std::string_view line) {
        std::string_view rest = line;
        const std::string_view key = takePart(rest, ':');
        if (rest.empty())
            refuse(line, "has nothing behind a colon");
        if (key == "about")
            source.about = withoutBlanks(rest);
        else if (key == "band")
            takeBand(rest);
        else
            takeGlobal(key, withoutBlanks(rest));
    }

    PresetSource source;

private:
    void takeBand(std::string_view items) {
        if (bandsTaken == bands)
            refuse("band", "is one too many");
        Band band(&source.values[static_cast<std::size_t>(bandsTaken++ * valuesPerBand)]);
        while (!items.empty())
            band.take(takePart(items, ','));
    }

    void takeGlobal(std::string_view key, std::string_view value) {
        for (std::size_t i = 0; i < std::size(globals); ++i) {
            if (globals[i].name != key)
                continue;
            source.values[static_cast<std::size_t>(firstGlobal) + i] = globalValue(globals[i], value);
            return;
        }
        refuse(key, "is no parameter");
    }

    std::int32_t bandsTaken = 0;
};

} // namespace

PresetSource readPresetSource(std::string_view text) {
    Reader reader;
    for (int number = 1; !text.empty(); ++number) {
        const std::string_view line = takePart(text, '\n');
        if (line.empty() || line.front() == '#')
            continue;
        try {
            reader.take(line);
        } catch (const PresetSourceError& error) {
            throw PresetSourceError("line " + std::to_string(number) + ": " + error.what());
        }
    }
    if (reader.source.about.empty())
        throw PresetSourceError("no line tells what the preset is for (about: ...)");
    return std::move(reader.source);
}
