// The parameter machine, with parameters made for the purpose.
#include "framework/FloatPluginParameter.h"
#include "framework/FloatPluginParameterUnit.h"
#include "framework/GenericPluginBase.h"
#include "framework/IndexedPluginParameter.h"
#include "framework/NoteText.h"
#include "framework/NumberFormat.h"
#include "framework/StereoPanParameter.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <vector>

namespace {

// Counts what it is told.
class Owner final : public GenericPluginBase {
public:
    void parameterChanged(std::int32_t id, float value, std::uint32_t flags) noexcept override {
        ++changes;
        last = {id, value, flags};
    }

    struct Change {
        std::int32_t id;
        float value;
        std::uint32_t flags;
    };
    int changes = 0;
    Change last{};
};

template <typename T>
struct Heard final : ValueAssignable<T> {
    void assign(T value) override { values.push_back(value); }
    std::vector<T> values;
};

std::string parsed(const AbstractPluginParameter& parameter, std::string_view text) {
    float value = 0.0f;
    return parameter.parseText(text, value) ? formatNumber(parameter.unitFromValue(value), "%.3f") : "refused";
}

TEST(NumberFormat, KeepsTheWidthOfNumbersAndNeverSignsAZero) {
    EXPECT_EQ(formatNumber(1.234, "*3f"), "1.234");
    EXPECT_EQ(formatNumber(12.34, "*3f"), "12.34");
    EXPECT_EQ(formatNumber(123.4, "*3f"), "123.4");
    EXPECT_EQ(formatNumber(1234.6, "*3f"), "1235");
    EXPECT_EQ(formatNumber(9.9994, "*3f"), "9.999");
    EXPECT_EQ(formatNumber(9.9996, "*3f"), "10.00") << "it rounds to one digit more";
    EXPECT_EQ(formatNumber(1.5, "*+2f"), "+1.50");
    EXPECT_EQ(formatNumber(-0.0001, "%.2f"), "0.00");
    EXPECT_EQ(formatNumber(0.0001, "*+2f"), "0.00");
    EXPECT_EQ(formatNumber(HUGE_VAL, "%.2f"), "INF");
    EXPECT_EQ(formatNumber(-HUGE_VAL, "*2f"), "-INF");
    EXPECT_EQ(formatSigned(-179.95, 2), "-INF");
    EXPECT_EQ(formatSigned(-12.345, 2), "-12.3");
    EXPECT_EQ(formatSigned(-12.345, 2, true), "-12.35");
    EXPECT_EQ(formatFrequency(9999.96), "10000");
    EXPECT_EQ(formatFrequency(99.99), "99.990");
}

TEST(NoteText, NotesAndCentsGoBothWays) {
    double log2Hz = 0.0;
    const auto hz = [&](std::string_view text) { return parseNote(text, log2Hz) ? std::exp2(log2Hz) : -1.0; };
    EXPECT_NEAR(hz("A4"), 440.0, 1e-3);
    EXPECT_NEAR(hz(" a"), 440.0, 1e-3) << "octave 4 when absent";
    EXPECT_NEAR(hz("Bb3"), 233.08, 0.01);
    EXPECT_NEAR(hz("c#-1"), 8.662, 0.001);
    EXPECT_NEAR(hz("A4 100"), hz("A#4"), 1e-6);
    for (const char* const other : {"", "H4", "A4 x", "4A", "\xC3\xA9"})
        EXPECT_EQ(hz(other), -1.0) << other;
    EXPECT_EQ(formatNote(69.4), "A4");
    EXPECT_EQ(formatNote(-1.0), "B-2");
    EXPECT_EQ(formatNoteWithCents(41.86), "F#2 -14");
}

TEST(FloatPluginParameter, TheOwnerHearsOfRealChangesOnly) {
    Owner owner;
    FloatPluginParameter parameter{&owner, "Level"};
    parameter.setRange(-10.0f, 10.0f, 1.0f);
    EXPECT_EQ(owner.changes, 0);
    parameter.setValue(1.0f, 0);
    parameter.setValue(1.0f + 1e-7f, 0);
    for (const float bad : {std::nanf(""), HUGE_VALF, -HUGE_VALF})
        parameter.setValue(bad, 0);
    EXPECT_EQ(owner.changes, 0);
    EXPECT_EQ(parameter.get(), 1.0f);
    parameter.setValue(20.0f, GenericParameterOwner::silent);
    EXPECT_EQ(owner.last.value, 10.0f) << "clamped";
    EXPECT_EQ(owner.last.flags, GenericParameterOwner::silent);
    parameter.setValue(30.0f, 0);
    EXPECT_EQ(owner.changes, 1);

    FloatPluginParameter alone{nullptr, "Nobody's"};
    alone.setRange(0.0f, 1.0f, 0.0f);
    alone.setValue(1.0f, 0);
    EXPECT_EQ(alone.get(), 1.0f);
    EXPECT_EQ(alone.id(), -1);
}

TEST(FloatPluginParameter, ListenersGetTheDisplayValueWhenTheOwnerSaysSo) {
    Owner owner;
    FloatPluginParameter parameter{&owner, "Level"};
    parameter.setRange(0.0f, 1.0f, 0.0f);
    parameter.setLinearDisplay();
    Heard<float> listener;
    parameter.addListener(&listener);
    parameter.setValue(0.5f, 0);
    EXPECT_TRUE(listener.values.empty());
    parameter.notifyListeners(0.5f);
    parameter.removeListener(&listener);
    parameter.notifyListeners(1.0f);
    EXPECT_EQ(listener.values, std::vector<float>{-45.0f});
}

TEST(FloatPluginParameter, TextIsReadAsUsersTypeIt) {
    FloatPluginParameter frequency{nullptr, "Frequency"};
    frequency.setRange(3.321928f, 14.872674f, 9.965784f);
    frequency.setUnit(expFreqUnit);
    EXPECT_EQ(parsed(frequency, "1,5 k"), "1500.000");
    EXPECT_EQ(parsed(frequency, "  1.5kHz "), "1500.000");
    EXPECT_EQ(parsed(frequency, "440"), "440.000");
    EXPECT_EQ(parsed(frequency, "A4"), "440.000");
    EXPECT_EQ(parsed(frequency, "1e9"), parsed(frequency, "30 khz")) << "clamped";
    EXPECT_EQ(parsed(frequency, "0%"), "10.000");

    FloatPluginParameter fall{nullptr, "Fall"};
    fall.setRange(-60.0f, 0.0f, -10.0f);
    fall.setUnit(dbUnit);
    EXPECT_EQ(parsed(fall, "30"), "-30.000") << "it can only fall";
    EXPECT_EQ(parsed(fall, "50%"), "-30.000");
    EXPECT_EQ(parsed(fall, "0.5x"), "-6.021");
    EXPECT_EQ(parsed(fall, "-inf"), "-60.000");
    EXPECT_EQ(parsed(fall, "30 Hz"), "refused");
}

enum class Colour : std::int32_t { red = 5, green = 9, blue = 2 };
constexpr std::array<Colour, 3> colours{Colour::red, Colour::green, Colour::blue};
constexpr std::array<IndexRange::Limit, 2> limits{{{1, 1}, {2, 3}}};

TEST(IndexedPluginParameter, HostsSeeTheIndexAndListenersTheValue) {
    Owner owner;
    IndexedPluginParameter<Colour> colour{&owner, "Colour"};
    colour.setMapping(colours);
    colour.setRange(0, 2, Colour::green);
    colour.setValueNames(ValueNames("Red,Dark Green,red"));
    EXPECT_EQ(colour.value(), 1.0f);
    Heard<Colour> listener;
    colour.addListener(&listener);
    colour.setValue(2.9f, 0);
    EXPECT_EQ(colour.get(), Colour::blue) << "truncated";
    colour.setValue(99.0f, 0);
    EXPECT_EQ(owner.changes, 1);
    colour.notifyListeners(0.0f);
    EXPECT_EQ(listener.values, std::vector<Colour>{Colour::red});
    EXPECT_EQ(colour.displayFromValue(1.0f), 9.0);
    EXPECT_EQ(colour.valueFromDisplay(2.0), 2.0f);

    EXPECT_EQ(parsed(colour, "red"), "2.000") << "exactly before without case";
    EXPECT_EQ(parsed(colour, "RED"), "0.000");
    EXPECT_EQ(parsed(colour, "9"), "1.000") << "a number is an enumeration's value";
    EXPECT_EQ(parsed(colour, "1"), "refused");
    for (int step = 0; step <= 2; ++step)
        EXPECT_EQ(colour.denormalize(colour.normalize(static_cast<float>(step))), static_cast<float>(step));
}

TEST(IndexedPluginParameter, OldFormatVersionsHadFewerValues) {
    IndexedPluginParameter<std::int32_t> number{nullptr, "Number"};
    number.setRange(0, 4, 0);
    number.setLimits(limits);
    float value = -1.0f;
    EXPECT_TRUE(number.denormalizeForVersion(1.0, 1, value));
    EXPECT_EQ(value, 1.0f);
    EXPECT_TRUE(number.denormalizeForVersion(1.0, 3, value));
    EXPECT_EQ(value, 2.0f);
    EXPECT_FALSE(number.denormalizeForVersion(0.0, 4, value)) << "the place of an earlier segment's value";
    EXPECT_TRUE(number.denormalizeForVersion(1.0, 4, value));
    EXPECT_EQ(value, 4.0f);
    EXPECT_EQ(number.normalizeForVersion(3.0f, 4), 0.5);
    EXPECT_EQ(number.normalizeForVersion(3.0f, 1), 0.0) << "it did not exist then";
    EXPECT_EQ(number.limitForVersion(3), 2);
    EXPECT_EQ(number.limitForVersion(2), -1);
}

TEST(StereoPanParameter, TellsAttenuationsAndReadsItsManyForms) {
    StereoPanParameter pan{nullptr, "Pan"};
    pan.setRange(-1.0f, 1.0f, 0.0f);
    EXPECT_EQ(pan.text(0.0f), "Left: 0 dB / Right: 0 dB");
    EXPECT_EQ(pan.text(0.5f), "Left: -6.02 dB / Right: 0 dB");
    EXPECT_EQ(pan.text(-1.0f), "Left: 0 dB / Right: -INF dB");
    const auto panFor = [&](std::string_view text) {
        float value = 9.0f;
        return pan.parseText(text, value) ? value : 9.0f;
    };
    for (const char* const centre : {"0/0", "Left: 0 dB / Right: 0 dB"})
        EXPECT_EQ(panFor(centre), 0.0f) << centre;
    EXPECT_EQ(panFor("right"), 1.0f);
    EXPECT_EQ(panFor("L"), -1.0f);
    EXPECT_NEAR(panFor("-6,02/0"), 0.5f, 1e-3f);
    EXPECT_NEAR(panFor("side: -6.02 dB"), -0.5f, 1e-3f);
    for (const char* const garbage : {"", "/", "Leftish", "1/2/3", "L/L", "\xC3\xA9"})
        EXPECT_EQ(panFor(garbage), 9.0f) << garbage;
}

TEST(ParameterDeathTest, ARangeWithoutItsStandardIsAProgrammingError) {
    FloatPluginParameter parameter{nullptr, "Level"};
    EXPECT_DEATH(parameter.setRange(0.0f, 1.0f, 2.0f), "release_assert failed");
}

} // namespace
