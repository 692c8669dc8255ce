// What a float parameter counts in: the unit words that a user may type, and how its values are written. All instances
// are process-wide constants.
// Threads: any.
#pragma once

#include "framework/ParameterTextFormat.h"

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

class FloatPluginParameterUnit {
public:
    struct Entry {
        std::string_view name;
        double factor = 1.0;
        double (*conversion)(double) noexcept = nullptr; // after the factor; null: none
    };

    std::string_view name() const noexcept { return entries().front().name; }

    // The entry of this name, without regard to case, applied to the number. False: no such entry.
    [[nodiscard]] bool convert(std::string_view word, double& number) const noexcept;

    // Writes the whole text, unit word included; false leaves that to the parameter.
    [[nodiscard]] virtual bool format(double unit, std::string& text) const;
    // Text that does not begin with a number; the result is in this unit.
    [[nodiscard]] virtual bool parseSpecial(std::string_view text, double& unit) const;
    virtual void attach(ParameterTextFormat& format) const;
    // A number that was typed without a unit word: which unit was meant?
    virtual void guessUnit(double& number, double current, double minimum, double maximum) const noexcept;

protected:
    constexpr FloatPluginParameterUnit() noexcept = default;
    ~FloatPluginParameterUnit() = default;

    virtual std::span<const Entry> entries() const noexcept = 0; // at least one
};

// Frequencies, typed as numbers or as notes.
class FreqParameterUnit : public FloatPluginParameterUnit {
public:
    [[nodiscard]] bool parseSpecial(std::string_view text, double& unit) const override;
    void attach(ParameterTextFormat& format) const override;

protected:
    ~FreqParameterUnit() = default;

    std::span<const Entry> entries() const noexcept override;
};

class HzParameterUnit final : public FreqParameterUnit {};

// The display value is log2 of the frequency.
class ExpFreqParameterUnit final : public FreqParameterUnit {
public:
    void attach(ParameterTextFormat& format) const override;
};

// The same with a straight piece below 1/8 Hz that ends at 0 Hz.
class ExpFreqWithZeroParameterUnit final : public FreqParameterUnit {
public:
    void attach(ParameterTextFormat& format) const override;
};

class MsParameterUnit final : public FloatPluginParameterUnit {
public:
    [[nodiscard]] bool format(double unit, std::string& text) const override;
    void guessUnit(double& number, double current, double minimum, double maximum) const noexcept override;

protected:
    std::span<const Entry> entries() const noexcept override;
};

class SecParameterUnit final : public FloatPluginParameterUnit {
public:
    [[nodiscard]] bool format(double unit, std::string& text) const override;
    void guessUnit(double& number, double current, double minimum, double maximum) const noexcept override;

protected:
    std::span<const Entry> entries() const noexcept override;
};

// Levels. "x" and "*" behind a number say that it is a linear gain.
class DBParameterUnitBase : public FloatPluginParameterUnit {
protected:
    explicit constexpr DBParameterUnitBase(std::string_view unitName) noexcept
        : names{{{unitName, 1.0, nullptr}, {"x", 1.0, gainToLevel}, {"*", 1.0, gainToLevel}}} {}
    ~DBParameterUnitBase() = default;

    std::span<const Entry> entries() const noexcept override { return names; }

private:
    static double gainToLevel(double gain) noexcept;

    std::array<Entry, 3> names;
};

class DBParameterUnit final : public DBParameterUnitBase {
public:
    explicit constexpr DBParameterUnit(std::string_view unitName) noexcept : DBParameterUnitBase(unitName) {}

    void attach(ParameterTextFormat& format) const override;
};

class DBRangeParameterUnit final : public DBParameterUnitBase {
public:
    constexpr DBRangeParameterUnit() noexcept : DBParameterUnitBase("dB") {}

    void attach(ParameterTextFormat& format) const override;
};

// The display value is in octaves, the unit value in semitones.
class OctavesParameterUnit final : public FloatPluginParameterUnit {
public:
    void attach(ParameterTextFormat& format) const override;

protected:
    std::span<const Entry> entries() const noexcept override;
};

class PercentParameterUnit final : public FloatPluginParameterUnit {
public:
    void attach(ParameterTextFormat& format) const override;

protected:
    std::span<const Entry> entries() const noexcept override;
};

class RatioParameterUnit final : public FloatPluginParameterUnit {
public:
    void attach(ParameterTextFormat& format) const override;

protected:
    std::span<const Entry> entries() const noexcept override;
};

class SlopeParameterUnit final : public FloatPluginParameterUnit {
public:
    void attach(ParameterTextFormat& format) const override;

protected:
    std::span<const Entry> entries() const noexcept override;
};

inline constexpr HzParameterUnit hzUnit;
inline constexpr ExpFreqParameterUnit expFreqUnit;
inline constexpr ExpFreqWithZeroParameterUnit expFreqWithZeroUnit;
inline constexpr MsParameterUnit msUnit;
inline constexpr SecParameterUnit secUnit;
inline constexpr DBParameterUnit dbUnit{"dB"};
inline constexpr DBParameterUnit dbTruePeakUnit{"dBTP"};
inline constexpr DBRangeParameterUnit dbRangeUnit;
inline constexpr OctavesParameterUnit octavesUnit;
inline constexpr PercentParameterUnit percentUnit;
inline constexpr RatioParameterUnit ratioUnit;
inline constexpr SlopeParameterUnit slopeUnit;
