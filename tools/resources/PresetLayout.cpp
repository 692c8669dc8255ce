#include "tools/resources/PresetLayout.h"

#include <algorithm>

namespace PresetLayout {

const Global globals[factoryValues - firstGlobal] = {
    {"Processing Mode", 0, 0, 2, "Zero Latency,Natural Phase,Linear Phase"},
    {"Processing Resolution", 1, 0, 4, "Low,Medium,High,Very High,Maximum"},
    {"Gain Scale", 1, 0, 2, {}},
    {"Output Level", 0, -1, 1, {}},
    {"Output Pan", 0, -1, 1, {}},
    {"Output Pan Mode", 0, 0, 1, "Left/Right,Mid/Side"},
    {"Bypass", 0, 0, 1, "Not Bypassed,Bypassed"},
    {"Output Invert Phase", 0, 0, 1, "Normal,Inverted"},
    {"Auto Gain", 0, 0, 1, "Off,On"},
    {"Analyzer Show Pre-Processing", 1, 0, 1, "Disabled,Enabled"},
    {"Analyzer Show Post-Processing", 1, 0, 1, "Disabled,Enabled"},
    {"Analyzer External Spectrum", -1, -2, 65536, {}},
    {"Analyzer Range", 1, 0, 2, "60 dB,90 dB,120 dB"},
    {"Analyzer Resolution", 2, 0, 3, "Low,Medium,High,Maximum"},
    {"Analyzer Speed", 2, 0, 4, "Very Slow,Slow,Medium,Fast,Very Fast"},
    {"Analyzer Tilt", 3, 0, 4, "0 dB/oct,1.5 dB/oct,3 dB/oct,4.5 dB/oct,6 dB/oct"},
    {"Analyzer Freeze", 0, 0, 1, "Off,On"},
    {"Analyzer Show Collisions", 1, 0, 1, "Disabled,Enabled"},
    {"Spectrum Grab", 1, 0, 1, "Disabled,Enabled"},
    {"Display Range", 2, 0, 3, "3 dB,6 dB,12 dB,30 dB"},
    {"Receive Midi", 0, 0, 1, "Enabled,Disabled"},
    {"Solo Gain", 0, -20, 20, {}},
};

namespace {

constexpr std::int32_t outputPanMode = 317;
constexpr std::int32_t showCollisions = 329;
constexpr std::int32_t firstExtension = factoryValues;

char lowerCase(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool sameName(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lowerCase(x) == lowerCase(y); });
}

} // namespace

std::int32_t indexOfName(std::string_view names, std::string_view name) {
    for (std::int32_t index = 0;; ++index) {
        const std::size_t comma = names.find(',');
        if (sameName(names.substr(0, comma), name))
            return index;
        if (comma == std::string_view::npos)
            return -1;
        names.remove_prefix(comma + 1);
    }
}

VersionMap mapOf(std::int32_t oldVersion) {
    VersionMap map;
    const bool bandsAreOlder = oldVersion == 1; // no switch for dynamics, and one solo for all
    for (std::int32_t band = 0; band < bands; ++band) {
        for (std::int32_t value = 0; value < valuesPerBand; ++value) {
            const std::int32_t index = band * valuesPerBand + value;
            if (!bandsAreOlder)
                map.indices.push_back(static_cast<std::uint32_t>(index));
            else if (value == solo)
                map.indices.push_back(static_cast<std::uint32_t>(solo)); // of the first band
            else if (value != dynamicsEnabled)
                map.indices.push_back(static_cast<std::uint32_t>(index));
        }
    }
    const auto isOld = [oldVersion](std::int32_t index) {
        return index != showCollisions && (index != outputPanMode || oldVersion == 3);
    };
    for (std::int32_t index = firstGlobal; index < firstExtension; ++index)
        if (isOld(index))
            map.indices.push_back(static_cast<std::uint32_t>(index));

    if (bandsAreOlder) {
        for (std::int32_t band = 0; band < bands; ++band)
            map.added.push_back(static_cast<std::uint32_t>(band * valuesPerBand + dynamicsEnabled));
        for (std::int32_t band = 1; band < bands; ++band)
            map.added.push_back(static_cast<std::uint32_t>(band * valuesPerBand + solo));
    }
    for (const std::int32_t index : {outputPanMode, showCollisions})
        if (!isOld(index))
            map.added.push_back(static_cast<std::uint32_t>(index));
    for (std::int32_t index = firstExtension; index < parameterCount; ++index)
        map.added.push_back(static_cast<std::uint32_t>(index));
    return map;
}

} // namespace PresetLayout
