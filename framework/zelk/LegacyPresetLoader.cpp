#include "framework/zelk/LegacyPresetLoader.h"

#include "framework/zelk/ZelkParameters.h"

#include <algorithm>
#include <cstddef>

namespace {

static_assert(bandCount == 24);

constexpr std::array<std::array<double, 2>, 7> qPoints{
    {{0.01, 0.01}, {0.6, 0.422}, {1.0, 0.74}, {1.2, 1.1}, {1.3, 1.25}, {1.4, 1.4}, {40.0, 40.0}}};
constexpr double smallestQ = 0.025;
constexpr double largestQ = 40.0;

// Left and right of a pair that held middle and side meant just those.
void convertPlacement(EQParameterSet& band, bool midSide) {
    if (!midSide)
        return;
    if (band.stereoPlacement.get() == StereoPlacement::left)
        band.stereoPlacement.setValue(static_cast<float>(StereoPlacement::mid), 0);
    else if (band.stereoPlacement.get() == StereoPlacement::right)
        band.stereoPlacement.setValue(static_cast<float>(StereoPlacement::side), 0);
}

// Presets of the first layout knew four slopes, and those of shapes other than cuts were not heard.
FilterSlope convertedSlope(FilterShape shape, FilterSlope stored) noexcept {
    if (shape != FilterShape::highPass && shape != FilterShape::lowPass)
        return FilterSlope::db12;
    if (static_cast<std::int32_t>(stored) == 2)
        return FilterSlope::db24;
    if (static_cast<std::int32_t>(stored) == 3)
        return FilterSlope::db48;
    return stored;
}

void reset(AbstractPluginParameter& parameter) {
    parameter.setValue(parameter.defaultValue(), 0);
}

} // namespace

LegacyPresetLoader::LegacyPresetLoader(GenericPlugin& owner, ZelkParameters& product,
                                       const PresetParameterCollection& main, Layout wanted)
    : CustomPresetLoader(owner, main, -1), parameters(product), layout(wanted) {
    bandStates.fill(2.0f);
    targets.clear();
    if (layout == Layout::second)
        targetSecond();
    else
        targetFirst();
}

void LegacyPresetLoader::targetSecond() {
    for (std::int32_t i = 0; i < bandCount; ++i) {
        EQParameterSet& band = parameters.bands.set(i);
        targets.push_back({nullptr, &bandStates[static_cast<std::size_t>(i)], 0.0f});
        for (AbstractPluginParameter* parameter : std::initializer_list<AbstractPluginParameter*>{
                 &band.frequency, &band.gain, &band.q, &band.shape, &band.slope, &band.stereoPlacement})
            targets.push_back({parameter, nullptr, 0.0f});
    }
    for (AbstractPluginParameter* parameter : std::initializer_list<AbstractPluginParameter*>{
             &parameters.processingMode, &parameters.processingResolution, &parameters.outputPanMode,
             &parameters.gainScale, &parameters.outputLevel, &parameters.outputPan, &parameters.bypass,
             &parameters.outputInvertPhase, &parameters.autoGain})
        targets.push_back({parameter, nullptr, 0.0f});
    targets.resize(targets.size() + 9); // nothing of today
    targets.push_back({&parameters.displayRange, nullptr, 0.0f});
    targets.push_back({&parameters.receiveMidi, nullptr, 0.0f});
    targets.push_back({nullptr, &soloBand, 0.0f});
    targets.push_back({&parameters.soloGain, nullptr, 0.0f});
}

void LegacyPresetLoader::targetFirst() {
    targets.push_back({nullptr, &activeBandCount, 0.0f});
    for (std::int32_t i = 0; i < bandCount; ++i) {
        EQParameterSet& band = parameters.bands.set(i);
        for (AbstractPluginParameter* parameter : std::initializer_list<AbstractPluginParameter*>{
                 &band.frequency, &band.gain, &band.q, &band.shape, &band.slope, &band.stereoPlacement, &band.enabled})
            targets.push_back({parameter, nullptr, 0.0f});
    }
    for (AbstractPluginParameter* parameter : std::initializer_list<AbstractPluginParameter*>{
             &parameters.outputLevel, &parameters.outputPan, &parameters.displayRange})
        targets.push_back({parameter, nullptr, 0.0f});
    targets.push_back({nullptr, &linearPhaseResolution, 0.0f});
    for (AbstractPluginParameter* parameter : std::initializer_list<AbstractPluginParameter*>{
             &parameters.outputPanMode, &parameters.bypass, &parameters.receiveMidi})
        targets.push_back({parameter, nullptr, 0.0f});
    targets.resize(targets.size() + 3); // nothing of today
}

void LegacyPresetLoader::finishLoad(std::int32_t) {
    const bool midSide = parameters.outputPanMode.get() == ChannelMode::midSide;
    for (std::int32_t i = 0; i < bandCount; ++i) {
        EQParameterSet& band = parameters.bands.set(i);
        if (layout == Layout::second)
            convertSecond(band, i);
        else
            convertFirst(band, i);
        convertPlacement(band, midSide);
        reset(band.dynamicRange);
        reset(band.speakers);
        reset(band.threshold);
        reset(parameters.extensions.set(i).externalSideChain);
    }
    if (layout == Layout::second)
        return;
    parameters.displayRange.setValue(static_cast<float>((parameters.displayRange.index() + 1) % 4), 0);
    if (linearPhaseResolution != 0.0f) {
        parameters.processingMode.setValue(static_cast<float>(ProcessingMode::linearPhase), 0);
        parameters.processingResolution.setValue(linearPhaseResolution - 1.0f, 0);
    } else {
        parameters.processingMode.setValue(static_cast<float>(ProcessingMode::zeroLatency), 0);
        reset(parameters.processingResolution);
    }
}

void LegacyPresetLoader::convertSecond(EQParameterSet& band, std::int32_t index) {
    const float state = bandStates[static_cast<std::size_t>(index)];
    band.used.setValue(state != 2.0f ? 1.0f : 0.0f, 0);
    band.enabled.setValue(state == 1.0f ? 1.0f : 0.0f, 0);
    band.solo.setValue(static_cast<float>(index) == soloBand ? 1.0f : 0.0f, 0);
}

void LegacyPresetLoader::convertFirst(EQParameterSet& band, std::int32_t index) {
    band.used.setValue(static_cast<float>(index) < activeBandCount ? 1.0f : 0.0f, 0);
    const FilterSlope slope = convertedSlope(band.shape.get(), band.slope.get());
    band.slope.setValue(static_cast<float>(slope), 0);
    if (slope == FilterSlope::db24 || slope == FilterSlope::db48)
        band.q.setValue(band.q.valueFromUnit(convertedQ(band.q.unitFromValue(band.q.value()))), 0);
    band.solo.setValue(0.0f, 0);
}

double LegacyPresetLoader::convertedQ(double q) noexcept {
    if (q <= smallestQ)
        return smallestQ;
    if (q > largestQ)
        return largestQ;
    std::size_t right = 1;
    while (right + 1 < qPoints.size() && q > qPoints[right][0])
        ++right;
    const auto& [x0, y0] = qPoints[right - 1];
    const auto& [x1, y1] = qPoints[right];
    return y0 + (q - x0) * (y1 - y0) / (x1 - x0);
}
