#include "framework/StereoPanParameter.h"

#include "framework/NumberFormat.h"
#include "framework/TextHelpers.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

enum class Channel { unnamed, first, second };

struct Attenuations {
    double first = 0.0; // dB, at most 0
    double second = 0.0;
};

struct ChannelName {
    std::string_view name;
    Channel channel;
};

// The longer name first: "L" begins "Left" as well.
constexpr std::array<ChannelName, 8> channelNames{{{"Left", Channel::first},
                                                   {"Right", Channel::second},
                                                   {"Mid", Channel::first},
                                                   {"Side", Channel::second},
                                                   {"L", Channel::first},
                                                   {"R", Channel::second},
                                                   {"M", Channel::first},
                                                   {"S", Channel::second}}};

double attenuation(double remaining) noexcept {
    return std::max(20.0 * std::log10(std::fabs(remaining)), silenceDb);
}

Attenuations attenuationsAt(float pan) noexcept {
    const double p = static_cast<double>(pan);
    return p >= 0.0 ? Attenuations{attenuation(1.0 - p), 0.0} : Attenuations{0.0, attenuation(p + 1.0)};
}

// What matters is the difference; two attenuations sound like the larger one and a softer output.
float panOf(const Attenuations& asked) noexcept {
    const double difference = std::min(std::fabs(asked.first), 1e6) - std::min(std::fabs(asked.second), 1e6);
    const double amount =
        std::fabs(difference) >= -silenceDb ? 1.0 : 1.0 - std::pow(10.0, -std::fabs(difference) / 20.0);
    return static_cast<float>(difference >= 0.0 ? amount : -amount);
}

// "Left: -3.00 dB": a name with or without ":", a number with or without "dB", at least one of the two.
struct Side {
    Channel channel = Channel::unnamed;
    bool hasNumber = false;
    double db = 0.0;
};

bool parseSide(std::string_view text, Side& side) {
    std::string_view rest = withoutBlanks(text);
    for (const ChannelName& candidate : channelNames) {
        const std::string_view behind = rest.substr(std::min(candidate.name.size(), rest.size()));
        const bool ends = behind.empty() || upperCase(behind.front()) < 'A' || upperCase(behind.front()) > 'Z';
        if (!ends || !startsWithText(rest, candidate.name))
            continue;
        side.channel = candidate.channel;
        rest = withoutBlanks(behind);
        if (rest.starts_with(':'))
            rest = withoutBlanks(rest.substr(1));
        break;
    }
    const std::size_t taken = readFormattedNumber(rest, side.db);
    side.hasNumber = taken > 0;
    rest = withoutBlanks(rest.substr(taken));
    return (rest.empty() || (side.hasNumber && compareText(rest, "dB"))) &&
           (side.hasNumber || side.channel != Channel::unnamed);
}

bool parsePair(std::string_view text, std::size_t slash, Attenuations& result) {
    Side left;
    Side right;
    if (!parseSide(text.substr(0, slash), left) || !parseSide(text.substr(slash + 1), right))
        return false;
    if (!left.hasNumber || !right.hasNumber || (left.channel == right.channel && left.channel != Channel::unnamed))
        return false;
    if (left.channel == Channel::second || right.channel == Channel::first)
        std::swap(left, right);
    result = {left.db, right.db};
    return true;
}

bool parseSingle(std::string_view text, Attenuations& result) {
    Side side;
    if (!parseSide(text, side) || side.channel == Channel::unnamed)
        return false;
    if (!side.hasNumber) // the named channel stays, the other goes
        result = side.channel == Channel::first ? Attenuations{0.0, silenceDb} : Attenuations{silenceDb, 0.0};
    else
        result = side.channel == Channel::first ? Attenuations{side.db, 0.0} : Attenuations{0.0, side.db};
    return true;
}

std::string levelText(double db) {
    return db >= 0.0 ? "0" : formatSigned(db, 2);
}

std::string wholeLevelText(double db) {
    return db < -179.9 ? "-INF" : formatNumber(db, "%.0f");
}

} // namespace

bool StereoPanParameter::isMidSide() const noexcept {
    return channelMode != nullptr && channelMode->value() >= 1.0f;
}

std::string StereoPanParameter::text(float value) const {
    const Attenuations now = attenuationsAt(value);
    const bool midSide = isMidSide();
    return (midSide ? "Mid: " : "Left: ") + levelText(now.first) + (midSide ? " dB / Side: " : " dB / Right: ") +
           levelText(now.second) + " dB";
}

std::string StereoPanParameter::shortText(float value, std::size_t maxLength) const {
    const Attenuations now = attenuationsAt(value);
    const bool midSide = isMidSide();
    const std::string pair = levelText(now.first) + "/" + levelText(now.second);
    const std::string whole = wholeLevelText(now.first) + "/" + wholeLevelText(now.second);
    const std::string_view louder = now.first < now.second   ? (midSide ? "S" : "R")
                                    : now.second < now.first ? (midSide ? "M" : "L")
                                                             : "0";
    const std::array<std::string, 4> forms{text(value),
                                           (midSide ? "M: " : "L: ") + levelText(now.first) +
                                               (midSide ? " / S: " : " / R: ") + levelText(now.second),
                                           pair, whole};
    for (const std::string& form : forms) {
        if (maxLength == 0 || form.size() <= maxLength)
            return form;
    }
    return std::string(louder);
}

bool StereoPanParameter::parseText(std::string_view text, float& value) const {
    std::string points(text);
    std::replace(points.begin(), points.end(), ',', '.');
    const std::size_t slash = points.find('/');
    Attenuations asked;
    if (slash == std::string::npos ? !parseSingle(points, asked) : !parsePair(points, slash, asked))
        return FloatPluginParameter::parseText(text, value);
    value = std::clamp(panOf(asked), minimum(), maximum());
    return true;
}
