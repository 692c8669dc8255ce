// Loads presets of the two parameter sets that the product had before its present one: their values stand in another
// order, and some say differently what several parameters say today.
// Threads: main.
#pragma once

#include "eq/FilterTypes.h"
#include "state/CustomPresetLoader.h"

#include <array>
#include <cstdint>
#include <string_view>

class EQParameterSet;
class ZelkParameters;

class LegacyPresetLoader final : public CustomPresetLoader {
public:
    enum class Layout : std::int32_t { first = 1, second = 2 };

    static constexpr std::int32_t fileVersion = 2;

    LegacyPresetLoader(GenericPlugin& owner, ZelkParameters& product, const PresetParameterCollection& main,
                       Layout wanted);

    static constexpr std::string_view signatureOf(Layout layout) noexcept {
        return layout == Layout::second ? "ZK2p" : "ZKPr";
    }

    // The Q that sounds today as this one did on slopes of 24 and 48 dB per octave in the first layout.
    static double convertedQ(double q) noexcept;

protected:
    void finishLoad(std::int32_t version) override;

private:
    void targetFirst();
    void targetSecond();
    void convertFirst(EQParameterSet& band, std::int32_t index);
    void convertSecond(EQParameterSet& band, std::int32_t index);

    ZelkParameters& parameters;
    const Layout layout;

    // Second layout.
    std::array<float, 24> bandStates; // 0: disabled, 1: enabled, 2: unused
    float soloBand = -1.0f;           // -1: none

    // First layout.
    float activeBandCount = 0.0f;
    float linearPhaseResolution = 0.0f; // 0: zero latency
};
